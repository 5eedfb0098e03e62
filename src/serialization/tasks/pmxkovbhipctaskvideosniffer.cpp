#include "pmxkovbhipctaskvideosniffer.h"

bool pmxKovBhIpcTaskVideoSniffer::Serialize(pmxSerializationIoStream *stream, unsigned int flags)
{
    return task.Serialize(stream, flags);
}
