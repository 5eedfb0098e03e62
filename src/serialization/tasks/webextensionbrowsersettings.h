#pragma once

#include "pmxserializable.h"
#include "webextensionbrowsermenusettings.h"
#include "webextensionbrowsermonitorsettings.h"

/// The options of the extension in the browser.
class WebExtensionBrowserSettings : public pmxSerializable {
public:
    bool operator==(const WebExtensionBrowserSettings &other) const;

    bool Serialize(pmxSerializationIoStream *stream, unsigned int flags) override;

    WebExtensionBrowserMenuSettings menu;
    WebExtensionBrowserMonitorSettings monitor;
};
