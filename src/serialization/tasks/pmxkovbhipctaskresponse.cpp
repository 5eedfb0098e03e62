#include "pmxkovbhipctaskresponse.h"

#include "pmxserializationiostream.h"

bool pmxKovBhIpcTaskResponse::Serialize(pmxSerializationIoStream *stream, unsigned int)
{
    return stream->SerializeValue("id", id, true) && stream->SerializeValue("type", type, true)
        && stream->SerializeValue("error", error, true)
        && stream->SerializeValue("result", result, true);
}
