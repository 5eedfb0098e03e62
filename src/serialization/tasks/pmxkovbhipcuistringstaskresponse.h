#pragma once

#include "pmxkovbhipctaskresponse.h"

#include <string>

/// The captions of the extension's context-menu entries, in UTF-8.
class pmxKovBhIpcUiStringsTaskResponse : public pmxKovBhIpcTaskResponse {
public:
    bool Serialize(pmxSerializationIoStream *stream, unsigned int flags) override;

    std::string dllink;
    std::string dlall;
    std::string dlselected;
    std::string dlvideo;
    /// Not used any more: sent, and always empty.
    std::string dlbykov;
};
