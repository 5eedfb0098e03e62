#include "pmxkovbhipchandshaketaskresponse.h"

#include "pmxoptionalmembers.h"
#include "pmxserializationiostream.h"

bool pmxKovBhIpcHandshakeTaskResponse::Serialize(pmxSerializationIoStream *stream,
                                                 unsigned int flags)
{
    return stream->SerializeValue("version", version, false)
        && pmxSerializeOptionalBools(stream, {{"bt", &bt}, {"yt", &yt}})
        && pmxKovBhIpcTaskResponse::Serialize(stream, flags);
}
