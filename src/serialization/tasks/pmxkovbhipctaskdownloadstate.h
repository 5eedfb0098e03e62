#pragma once

#include "pmxserializable.h"

#include <string>

/// The state of one of the browser's own downloads.
class pmxKovBhIpcTaskDownloadState : public pmxSerializable {
public:
    bool Serialize(pmxSerializationIoStream *stream, unsigned int flags) override;

    std::string url;
    std::string state;
};
