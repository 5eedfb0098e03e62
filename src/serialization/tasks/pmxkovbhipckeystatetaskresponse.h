#pragma once

#include "pmxkovbhipctaskresponse.h"
#include "pmxserializationiostream.h"

/// Whether a key of the keyboard is held.
class pmxKovBhIpcKeyStateTaskResponse : public pmxKovBhIpcTaskResponse {
public:
    bool Serialize(pmxSerializationIoStream *stream, unsigned int flags) override
    {
        return stream->SerializeBoolValue("pressed", pressed, false)
            && stream->SerializeDoubleValue("keyCode", keyCode, false)
            && pmxKovBhIpcTaskResponse::Serialize(stream, flags);
    }

    bool pressed = false;
    /// A virtual-key code, a whole number.
    double keyCode = 0;
};
