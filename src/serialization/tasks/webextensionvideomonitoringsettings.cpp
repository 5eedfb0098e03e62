#include "webextensionvideomonitoringsettings.h"

bool WebExtensionVideoMonitoringSettings::Serialize(pmxSerializationIoStream *stream,
                                                    unsigned int flags)
{
    return pmxSerializeMembers(stream, *this, flags);
}
