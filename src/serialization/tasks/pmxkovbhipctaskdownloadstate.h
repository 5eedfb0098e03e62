#pragma once

#include "pmxoptionalmembers.h"
#include "pmxserializable.h"

#include <string>

/// The state of one of the browser's own downloads.
class pmxKovBhIpcTaskDownloadState : public pmxSerializable {
public:
    bool Serialize(pmxSerializationIoStream *stream, unsigned int) override
    {
        return pmxSerializeOptionalStrings(stream, {{"url", &url}, {"state", &state}});
    }

    std::string url;
    std::string state;
};
