#include "pmxkovbhipctaskdownloadstate.h"

#include "pmxoptionalmembers.h"

bool pmxKovBhIpcTaskDownloadState::Serialize(pmxSerializationIoStream *stream, unsigned int)
{
    return pmxSerializeOptionalStrings(stream, {{"url", &url}, {"state", &state}});
}
