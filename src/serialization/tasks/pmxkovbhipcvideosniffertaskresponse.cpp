#include "pmxkovbhipcvideosniffertaskresponse.h"

#include "pmxserializationiostream.h"

bool pmxKovBhIpcVideoSnifferTaskResponse::Serialize(pmxSerializationIoStream *stream,
                                                    unsigned int flags)
{
    const auto node = stream->SelectOrCreateNode("videoSniffer", false);
    return node && videoSniffer.Serialize(node.get(), flags)
        && pmxKovBhIpcTaskResponse::Serialize(stream, flags);
}
