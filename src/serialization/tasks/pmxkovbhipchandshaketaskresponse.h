#pragma once

#include "pmxkovbhipctaskresponse.h"

#include <string>

/// What the host is and can do.
class pmxKovBhIpcHandshakeTaskResponse : public pmxKovBhIpcTaskResponse {
public:
    bool Serialize(pmxSerializationIoStream *stream, unsigned int flags) override;

    std::string version;
    bool bt = true;
    bool yt = false;
};
