#include "pmxflvsniffcallproctaskresponse.h"

#include "pmxoptionalmembers.h"

bool pmxFlvSniffCallProcTaskResponse::Serialize(pmxSerializationIoStream *stream, unsigned int)
{
    return pmxSerializeOptionalStrings(
        stream, {{"result", &result}, {"error", &error}, {"error2", &error2}});
}
