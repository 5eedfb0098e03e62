#include "webextensionbrowsermonitorsettings.h"

bool WebExtensionBrowserMonitorSettings::Serialize(pmxSerializationIoStream *stream,
                                                   unsigned int flags)
{
    return pmxSerializeMembers(stream, *this, flags);
}
