#include "pmxkovbhipcbrowserproxyinfo.h"

#include "pmxoptionalmembers.h"
#include "pmxserializationiostream.h"

bool pmxKovBhIpcBrowserProxyInfo::Serialize(pmxSerializationIoStream *stream, unsigned int)
{
    return stream->SerializeValueS("type", type, false)
        && pmxSerializeOptionalStrings(stream, {{"protocol", &protocol}, {"addr", &addr}})
        && stream->SerializeValueS("port", port, false);
}
