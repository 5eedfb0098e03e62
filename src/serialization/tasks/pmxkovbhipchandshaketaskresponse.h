#pragma once

#include "pmxkovbhipctaskresponse.h"
#include "pmxoptionalmembers.h"
#include "pmxserializationiostream.h"

#include <string>

/// What the host is and can do.
class pmxKovBhIpcHandshakeTaskResponse : public pmxKovBhIpcTaskResponse {
public:
    bool Serialize(pmxSerializationIoStream *stream, unsigned int flags) override
    {
        return stream->SerializeValue("version", version, false)
            && pmxSerializeOptionalBools(stream, {{"bt", &bt}, {"yt", &yt}})
            && pmxKovBhIpcTaskResponse::Serialize(stream, flags);
    }

    std::string version;
    bool bt = true;
    bool yt = false;
};
