#pragma once

#include "pmxserializable.h"
#include "webextensionvideomonitoringsettings.h"

#include <cstdint>
#include <string>

/// Which downloads of the browser are caught.
class WebExtensionBrowserMonitorSettings : public pmxSerializable {
public:
    bool operator==(const WebExtensionBrowserMonitorSettings &other) const;

    bool Serialize(pmxSerializationIoStream *stream, unsigned int flags) override;

    WebExtensionVideoMonitoringSettings video;
    bool enable = true;
    /// A download that the user turns down in the application goes on in the browser.
    bool allowDownload = true;
    /// In bytes; 0: no size rule.
    std::int64_t skipSmallerThan = 0;
    /// File extensions, separated by single spaces; empty: no extension rule.
    std::string skipExtensions;
    bool skipServersEnabled = false;
    /// Host names, separated by single spaces.
    std::string skipServers;
    bool skipIfKeyPressed = false;
};
