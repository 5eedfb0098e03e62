#include "webextensionbrowsermenusettings.h"

bool WebExtensionBrowserMenuSettings::Serialize(pmxSerializationIoStream *stream,
                                                unsigned int flags)
{
    return pmxSerializeMembers(stream, *this, flags);
}
