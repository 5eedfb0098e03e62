#pragma once

#include "pmxmembers.h"
#include "pmxserializable.h"
#include "webextensionvideomonitoringsettings.h"

#include <cstdint>
#include <string>
#include <tuple>

/// Which downloads of the browser are caught.
class WebExtensionBrowserMonitorSettings : public pmxSerializable {
public:
    bool operator==(const WebExtensionBrowserMonitorSettings &other) const
    {
        return pmxEqualMembers(*this, other);
    }

    bool Serialize(pmxSerializationIoStream *stream, unsigned int flags) override
    {
        return pmxSerializeMembers(stream, *this, flags);
    }

    WebExtensionVideoMonitoringSettings video;
    bool enable = true;
    /// A download that the user declines in the application continues in the browser.
    bool allowDownload = true;
    /// In bytes; 0: no size rule.
    std::int64_t skipSmallerThan = 0;
    /// File extensions, separated by single spaces; empty: no extension rule.
    std::string skipExtensions;
    bool skipServersEnabled = false;
    /// Host names, separated by single spaces.
    std::string skipServers;
    bool skipIfKeyPressed = false;

    static constexpr auto members()
    {
        using Record = WebExtensionBrowserMonitorSettings;
        return std::tuple(pmxMember("video", &Record::video),
                          pmxMember("enable", &Record::enable).heldBy("WbInterceptDownloads"),
                          pmxMember("allowDownload", &Record::allowDownload)
                              .heldBy("WbAbortedInterceptedDownloadForwardToBrowser"),
                          pmxMember("skipSmallerThan", &Record::skipSmallerThan)
                              .heldBy("WbDownloadsTooSmallSizeValue")
                              .switchedBy("WbDontInterceptTooSmallDownloads"),
                          pmxMember("skipExtensions", &Record::skipExtensions)
                              .heldBy("WbDownloadsUnwantedExtensionsList")
                              .switchedBy("WbDontInterceptDownloadsWithUnwantedExtensions"),
                          pmxMember("skipServersEnabled", &Record::skipServersEnabled)
                              .heldBy("WbDontInterceptDownloadsFromUnwantedHosts"),
                          pmxMember("skipServers", &Record::skipServers)
                              .heldBy("WbDownloadsUnwantedHostsList")
                              .writtenOnlyWith(&Record::skipServersEnabled),
                          pmxMember("skipIfKeyPressed", &Record::skipIfKeyPressed)
                              .heldBy("WbDontInterceptDownloadsIfKeyIsPressed"));
    }
};
