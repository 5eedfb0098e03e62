#include "pmxkovbhipcdownloadinfo.h"

#include "pmxoptionalmembers.h"
#include "pmxserializationiostream.h"

bool pmxKovBhIpcDownloadInfo::Serialize(pmxSerializationIoStream *stream, unsigned int)
{
    const bool ok = stream->SerializeValue("url", url, true);
    pmxSerializeOptionalStrings(stream,
                                {{"suggestedName", &suggestedName},
                                 {"httpReferer", &httpReferer},
                                 {"documentUrl", &documentUrl},
                                 {"userAgent", &userAgent},
                                 {"httpCookies", &httpCookies},
                                 {"httpPostData", &httpPostData},
                                 {"originalUrl", &originalUrl}});
    stream->SerializeValueS("fileSize", fileSize, false);
    return ok;
}
