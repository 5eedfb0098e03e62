#include "pmxkovbhipctaskcreatedownloads.h"

#include "pmxoptionalmembers.h"

bool pmxKovBhIpcTaskCreateDownloads::Serialize(pmxSerializationIoStream *stream, unsigned int flags)
{
    return pmxSerializeOptionalRecord(stream, "downloads", downloads, flags)
        && pmxSerializeOptionalTextBools(stream,
                                         {{"catchedDownloads", &catchedDownloads},
                                          {"waitResponse", &waitResponse},
                                          {"ignoreSettings", &ignoreSettings}});
}
