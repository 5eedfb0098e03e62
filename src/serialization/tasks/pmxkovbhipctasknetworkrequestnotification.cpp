#include "pmxkovbhipctasknetworkrequestnotification.h"

#include "pmxoptionalmembers.h"

bool pmxKovBhIpcTaskNetworkRequestNotification::Serialize(pmxSerializationIoStream *stream,
                                                          unsigned int)
{
    return pmxSerializeOptionalStrings(stream,
                                       {{"type", &type},
                                        {"url", &url},
                                        {"srcTabUrl", &srcTabUrl},
                                        {"requestId", &requestId},
                                        {"requestHeaders", &requestHeaders},
                                        {"responseHeaders", &responseHeaders},
                                        {"data", &data}});
}
