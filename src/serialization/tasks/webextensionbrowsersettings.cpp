#include "webextensionbrowsersettings.h"

#include "pmxoptionalmembers.h"

bool WebExtensionBrowserSettings::Serialize(pmxSerializationIoStream *stream, unsigned int flags)
{
    return pmxSerializeOptionalRecord(stream, "menu", menu, flags)
        && pmxSerializeOptionalRecord(stream, "monitor", monitor, flags);
}

bool WebExtensionBrowserSettings::operator==(const WebExtensionBrowserSettings &other) const
{
    return menu == other.menu && monitor == other.monitor;
}
