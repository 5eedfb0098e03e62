#pragma once

#include "pmxflvsniffcallproctaskresponse.h"
#include "pmxkovbhipctaskresponse.h"

/// The answer to a sniffing request.
class pmxKovBhIpcVideoSnifferTaskResponse : public pmxKovBhIpcTaskResponse {
public:
    bool Serialize(pmxSerializationIoStream *stream, unsigned int flags) override;

    pmxFlvSniffCallProcTaskResponse videoSniffer;
};
