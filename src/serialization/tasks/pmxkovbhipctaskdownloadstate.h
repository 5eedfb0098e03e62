#pragma once

#include "pmxserializable.h"

#include <string>

/// The state of a download that the browser makes itself.
class pmxKovBhIpcTaskDownloadState : public pmxSerializable {
public:
    bool Serialize(pmxSerializationIoStream *stream, unsigned int flags) override;

    std::string url;
    std::string state;
};
