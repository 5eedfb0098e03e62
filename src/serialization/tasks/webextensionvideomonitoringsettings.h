#pragma once

#include "pmxserializable.h"

/// What the extension does about videos on pages.
class WebExtensionVideoMonitoringSettings : public pmxSerializable {
public:
    bool operator==(const WebExtensionVideoMonitoringSettings &other) const;

    bool Serialize(pmxSerializationIoStream *stream, unsigned int flags) override;

    bool enable = false;
    bool enableSnifferDll = false;
    bool showButton = true;
};
