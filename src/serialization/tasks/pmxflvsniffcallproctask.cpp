#include "pmxflvsniffcallproctask.h"

#include "pmxoptionalmembers.h"

bool pmxFlvSniffCallProcTask::Serialize(pmxSerializationIoStream *stream, unsigned int)
{
    return pmxSerializeOptionalStrings(stream,
                                       {{"name", &name},
                                        {"webPageUrl", &webPageUrl},
                                        {"frameUrl", &frameUrl},
                                        {"swfUrl", &swfUrl},
                                        {"flashVars", &flashVars},
                                        {"otherSwfUrls", &otherSwfUrls},
                                        {"otherFlashVars", &otherFlashVars},
                                        {"url", &url},
                                        {"srcTabUrl", &srcTabUrl},
                                        {"requestHeaders", &requestHeaders},
                                        {"responseHeaders", &responseHeaders},
                                        {"requestId", &requestId}});
}
