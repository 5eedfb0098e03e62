#pragma once

#include "pmxkovbhipctask.h"
#include "pmxkovbhipctaskresponse.h"

#include <QString>

#include <memory>
#include <optional>

/// An answer to the task, empty but for the task's id and type.
template <typename Response = pmxKovBhIpcTaskResponse>
std::shared_ptr<Response> pmxResponseTo(const pmxKovBhIpcTask &task)
{
    auto response = std::make_shared<Response>();
    response->id = task.id;
    response->type = task.type;
    return response;
}

/// The response as it is sent, a JSON text; nothing when it cannot be written.
std::optional<QString> pmxResponseText(pmxKovBhIpcTaskResponse &response);
