#include "pmxtaskresponses.h"

#include "pmxjsonserializeobject.h"

void pmxSetOutcome(pmxKovBhIpcTaskResponse &response, const DownloadsOutcome &outcome)
{
    // Downloads that the application already has count as added, or the browser would download
    // them.
    if (outcome.added
        || (outcome.aborted && outcome.abortReason == AbstractDownloadAbortReason::AlreadyExists))
        response.result = '1';
    else if (outcome.aborted)
        response.result = '0';
    else
        response.error = outcome.error.toStdString();
}

std::optional<std::string> pmxResponseText(pmxKovBhIpcTaskResponse &response)
{
    return pmxJsonText(response, 0);
}
