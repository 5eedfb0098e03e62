#include "pmxkovbhipckeystatetaskresponse.h"

#include "pmxserializationiostream.h"

bool pmxKovBhIpcKeyStateTaskResponse::Serialize(pmxSerializationIoStream *stream,
                                                unsigned int flags)
{
    return stream->SerializeBoolValue("pressed", pressed, false)
        && stream->SerializeDoubleValue("keyCode", keyCode, false)
        && pmxKovBhIpcTaskResponse::Serialize(stream, flags);
}
