#include "pmxkovbhipcuistringstaskresponse.h"

#include "pmxoptionalmembers.h"
#include "pmxserializationiostream.h"

bool pmxKovBhIpcUiStringsTaskResponse::Serialize(pmxSerializationIoStream *stream,
                                                 unsigned int flags)
{
    const auto strings = stream->SelectOrCreateNode("strings", false);
    if (!strings)
        return false;
    return pmxSerializeOptionalStrings(strings.get(),
                                       {{"dllink", &dllink},
                                        {"dlall", &dlall},
                                        {"dlselected", &dlselected},
                                        {"dlvideo", &dlvideo},
                                        {"dlbykov", &dlbykov}})
        && pmxKovBhIpcTaskResponse::Serialize(stream, flags);
}
