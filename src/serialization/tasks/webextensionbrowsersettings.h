#pragma once

#include "pmxmembers.h"
#include "pmxserializable.h"
#include "webextensionbrowsermenusettings.h"
#include "webextensionbrowsermonitorsettings.h"

#include <tuple>

/// The options of the extension in the browser.
class WebExtensionBrowserSettings : public pmxSerializable {
public:
    bool operator==(const WebExtensionBrowserSettings &other) const
    {
        return pmxEqualMembers(*this, other);
    }

    bool Serialize(pmxSerializationIoStream *stream, unsigned int flags) override
    {
        return pmxSerializeMembers(stream, *this, flags);
    }

    WebExtensionBrowserMenuSettings menu;
    WebExtensionBrowserMonitorSettings monitor;

    static constexpr auto members()
    {
        using Record = WebExtensionBrowserSettings;
        return std::tuple(pmxMember("menu", &Record::menu), pmxMember("monitor", &Record::monitor));
    }
};
