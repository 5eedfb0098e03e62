#pragma once

#include "pmxserializable.h"
#include "pmxserializationiostream.h"
#include "windowtasktype.h"

#include <string>

/// Something to be done to a window.
class WindowTask : public pmxSerializable {
public:
    bool Serialize(pmxSerializationIoStream *stream, unsigned int) override
    {
        return stream->SerializeValue("windowHandle", windowHandle, false)
            && stream->SerializeValueS("action", action, false)
            && stream->SerializeValueS("needWait", needWait, false);
    }

    std::string windowHandle;
    /// An unknown action in JSON leaves it as it is.
    WindowTaskType action = WindowTaskShow;
    bool needWait = false;
};
