#include "pmxtaskresponses.h"

#include "pmxjsonserializeobject.h"

#include <sstream>
#include <string>
#include <string_view>

void pmxSetOutcome(pmxKovBhIpcTaskResponse &response, const DownloadsOutcome &outcome)
{
    // Downloads that the application has already count as taken, or the browser would make them.
    if (outcome.added
        || (outcome.aborted && outcome.abortReason == AbstractDownloadAbortReason::AlreadyExists))
        response.result = '1';
    else if (outcome.aborted)
        response.result = '0';
    else
        response.error = outcome.error.toStdString();
}

std::optional<QString> pmxResponseText(pmxKovBhIpcTaskResponse &response)
{
    // One for all responses of a thread: making one costs as much as writing a small response.
    thread_local std::ostringstream json;
    json.str(std::string());
    json.clear();
    if (!pmxJsonSerializeObject(response, json, 0))
        return std::nullopt;
    const std::string_view text = json.view();
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}
