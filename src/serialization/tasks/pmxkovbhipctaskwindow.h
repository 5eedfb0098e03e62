#pragma once

#include "pmxserializable.h"
#include "windowtask.h"

/// A window task; its members are those of the message.
class pmxKovBhIpcTaskWindow : public pmxSerializable {
public:
    bool Serialize(pmxSerializationIoStream *stream, unsigned int flags) override
    {
        return task.Serialize(stream, flags);
    }

    WindowTask task;
};
