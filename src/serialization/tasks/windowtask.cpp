#include "windowtask.h"

#include "pmxserializationiostream.h"

bool WindowTask::Serialize(pmxSerializationIoStream *stream, unsigned int)
{
    return stream->SerializeValue("windowHandle", windowHandle, false)
        && stream->SerializeValueS("action", action, false)
        && stream->SerializeValueS("needWait", needWait, false);
}
