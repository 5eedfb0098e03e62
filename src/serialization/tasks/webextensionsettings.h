#pragma once

#include "pmxmembers.h"
#include "pmxserializable.h"
#include "webextensionbrowsersettings.h"

#include <string>
#include <tuple>

/// The extension's options. Members missing from a JSON text keep their values.
class WebExtensionSettings : public pmxSerializable {
public:
    /// Whether there is no change worth reporting: ignores the menu's dlvideo.
    bool operator==(const WebExtensionSettings &other) const
    {
        return pmxEqualMembers(*this, other);
    }

    bool Serialize(pmxSerializationIoStream *stream, unsigned int flags) override
    {
        return pmxSerializeMembers(stream, *this, flags);
    }

    WebExtensionBrowserSettings browser;
    /// The extension's locale name; only the extension sets it.
    std::string locale;

    static constexpr auto members()
    {
        using Record = WebExtensionSettings;
        return std::tuple(pmxMember("browser", &Record::browser),
                          pmxMember("locale", &Record::locale));
    }
};
