#pragma once

#include "pmxoptionalmembers.h"
#include "pmxserializable.h"

#include <string>

/// The outcome of a sniffing request.
class pmxFlvSniffCallProcTaskResponse : public pmxSerializable {
public:
    bool Serialize(pmxSerializationIoStream *stream, unsigned int) override
    {
        return pmxSerializeOptionalStrings(
            stream, {{"result", &result}, {"error", &error}, {"error2", &error2}});
    }

    /// "1" or "0".
    std::string result;
    std::string error;
    /// The detail of the error.
    std::string error2;
};
