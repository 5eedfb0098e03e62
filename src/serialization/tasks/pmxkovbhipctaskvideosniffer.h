#pragma once

#include "pmxflvsniffcallproctask.h"
#include "pmxserializable.h"

/// A sniffing request; its members are those of the message.
class pmxKovBhIpcTaskVideoSniffer : public pmxSerializable {
public:
    bool Serialize(pmxSerializationIoStream *stream, unsigned int flags) override
    {
        return task.Serialize(stream, flags);
    }

    pmxFlvSniffCallProcTask task;
};
