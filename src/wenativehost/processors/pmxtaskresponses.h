#pragma once

#include "abstractdownloadenums.h"
#include "pmxkovbhipctask.h"
#include "pmxkovbhipctaskresponse.h"

#include <QString>

#include <memory>
#include <optional>
#include <string>

/// An answer to the task, with the task's id and type only.
template <typename Response = pmxKovBhIpcTaskResponse>
std::shared_ptr<Response> pmxResponseTo(const pmxKovBhIpcTask &task)
{
    auto response = std::make_shared<Response>();
    response->id = task.id;
    response->type = task.type;
    return response;
}

/// The outcome of downloads that were handed to the application; neither added nor aborted means
/// that it failed.
struct DownloadsOutcome {
    bool added = false;
    bool aborted = false;
    AbstractDownloadAbortReason abortReason = AbstractDownloadAbortReason::None;
    /// The application's text, or that of a failure of the host.
    QString error;
};

/// Answers "1", "0" or an error text.
void pmxSetOutcome(pmxKovBhIpcTaskResponse &response, const DownloadsOutcome &outcome);

/// The response as JSON text in UTF-8; nothing if it cannot be written.
std::optional<std::string> pmxResponseText(pmxKovBhIpcTaskResponse &response);
