#pragma once

#include "pmxflvsniffcallproctaskresponse.h"
#include "pmxkovbhipctaskresponse.h"
#include "pmxserializationiostream.h"

/// The answer to a sniffing request.
class pmxKovBhIpcVideoSnifferTaskResponse : public pmxKovBhIpcTaskResponse {
public:
    bool Serialize(pmxSerializationIoStream *stream, unsigned int flags) override
    {
        const auto node = stream->SelectOrCreateNode("videoSniffer", false);
        return node && videoSniffer.Serialize(node.get(), flags)
            && pmxKovBhIpcTaskResponse::Serialize(stream, flags);
    }

    pmxFlvSniffCallProcTaskResponse videoSniffer;
};
