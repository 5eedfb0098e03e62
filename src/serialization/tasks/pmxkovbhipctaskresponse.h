#pragma once

#include "pmxserializable.h"

#include <string>

/**
 * The answer to a task, or with an empty id a notification.
 *
 * Derived responses serialize their own members before these, all of which are required.
 */
class pmxKovBhIpcTaskResponse : public pmxSerializable {
public:
    bool Serialize(pmxSerializationIoStream *stream, unsigned int flags) override;

    std::string id;
    /// The task type's name.
    std::string type;
    std::string result;
    std::string error;
};
