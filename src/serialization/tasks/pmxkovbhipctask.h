#pragma once

#include "kovipctasktype.h"
#include "pmxkovbhipcbrowserproxyinfo.h"
#include "pmxkovbhipctaskcreatedownloads.h"
#include "pmxkovbhipctaskdownloadstate.h"
#include "pmxkovbhipctaskhandshake.h"
#include "pmxkovbhipctasknetworkrequestnotification.h"
#include "pmxkovbhipctaskvideosniffer.h"
#include "pmxkovbhipctaskwindow.h"
#include "pmxserializable.h"
#include "webextensionsettings.h"

#include <string>

/**
 * A message from the extension.
 *
 * Its id and type are required, and so is the sub-record of a type that has one; all other
 * sub-records keep their defaults.
 */
class pmxKovBhIpcTask : public pmxSerializable {
public:
    /// The type that the first word of "type" names; unknown when it names none.
    kov_ipc_task_type get_type() const;

    bool Serialize(pmxSerializationIoStream *stream, unsigned int flags) override;
    /// Whether a required member was missing: the task holds only what was read before it.
    bool readFailed() const { return m_readFailed; }

    std::string id;
    /// As received: the name may be followed by a blank and more.
    std::string type;

    pmxKovBhIpcTaskHandshake handshake;
    pmxKovBhIpcTaskCreateDownloads create_downloads;
    pmxKovBhIpcBrowserProxyInfo browser_proxy;
    pmxKovBhIpcTaskWindow window;
    pmxKovBhIpcTaskVideoSniffer video_sniffer;
    pmxKovBhIpcTaskNetworkRequestNotification network_request_notification;
    pmxKovBhIpcTaskDownloadState browser_download_state_report;
    WebExtensionSettings post_settings;
    /// The request of a "kov_json_task".
    std::string json;

private:
    bool serializeMembers(pmxSerializationIoStream *stream);
    /// Null for a type without one.
    pmxSerializable *subRecord(kov_ipc_task_type taskType);

    bool m_readFailed = false;
};
