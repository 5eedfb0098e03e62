#include "webextensionsettings.h"

bool WebExtensionSettings::Serialize(pmxSerializationIoStream *stream, unsigned int flags)
{
    return pmxSerializeMembers(stream, *this, flags);
}
