#include "webextensionbrowsersettings.h"

bool WebExtensionBrowserSettings::Serialize(pmxSerializationIoStream *stream, unsigned int flags)
{
    return pmxSerializeMembers(stream, *this, flags);
}
