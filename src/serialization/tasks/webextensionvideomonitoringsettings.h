#pragma once

#include "pmxmembers.h"
#include "pmxserializable.h"

#include <tuple>

/// What the extension does about videos on pages.
class WebExtensionVideoMonitoringSettings : public pmxSerializable {
public:
    bool operator==(const WebExtensionVideoMonitoringSettings &other) const
    {
        return pmxEqualMembers(*this, other);
    }

    bool Serialize(pmxSerializationIoStream *stream, unsigned int flags) override
    {
        return pmxSerializeMembers(stream, *this, flags);
    }

    bool enable = false;
    bool enableSnifferDll = false;
    bool showButton = true;

    static constexpr auto members()
    {
        using Record = WebExtensionVideoMonitoringSettings;
        return std::tuple(pmxMember("enable", &Record::enable),
                          pmxMember("enableSnifferDll", &Record::enableSnifferDll),
                          pmxMember("showButton", &Record::showButton));
    }
};
