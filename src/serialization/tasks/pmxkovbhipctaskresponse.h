#pragma once

#include "pmxserializable.h"
#include "pmxserializationiostream.h"

#include <string>

/**
 * The answer to a task, or with an empty id a notification.
 *
 * Derived responses serialize their own members before these, all of which are required.
 */
class pmxKovBhIpcTaskResponse : public pmxSerializable {
public:
    bool Serialize(pmxSerializationIoStream *stream, unsigned int) override
    {
        return stream->SerializeValue("id", id, true) && stream->SerializeValue("type", type, true)
            && stream->SerializeValue("error", error, true)
            && stream->SerializeValue("result", result, true);
    }

    std::string id;
    /// The task type's name.
    std::string type;
    std::string result;
    std::string error;
};
