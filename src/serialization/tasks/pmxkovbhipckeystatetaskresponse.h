#pragma once

#include "pmxkovbhipctaskresponse.h"

/// Whether a key of the keyboard is held.
class pmxKovBhIpcKeyStateTaskResponse : public pmxKovBhIpcTaskResponse {
public:
    bool Serialize(pmxSerializationIoStream *stream, unsigned int flags) override;

    bool pressed = false;
    /// A virtual-key code, a whole number.
    double keyCode = 0;
};
