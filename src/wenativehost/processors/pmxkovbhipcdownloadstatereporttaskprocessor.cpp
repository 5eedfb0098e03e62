#include "pmxkovbhipcdownloadstatereporttaskprocessor.h"

#include "browseractivitymonitor.h"
#include "pmxkovbhipctask.h"
#include "pmxkovbhipctaskresponse.h"
#include "pmxtaskerrors.h"
#include "pmxtaskresponses.h"

#include <utility>

pmxKovBhIpcDownloadStateReportTaskProcessor::pmxKovBhIpcDownloadStateReportTaskProcessor(
    QSharedPointer<BrowserActivityMonitor> monitor)
    : m_monitor(std::move(monitor))
{
}

void pmxKovBhIpcDownloadStateReportTaskProcessor::process(std::shared_ptr<pmxKovBhIpcTask> task,
                                                          Callback callback)
{
    const auto response = pmxResponseTo(*task);
    const std::string &url = task->browser_download_state_report.url;
    const std::string &state = task->browser_download_state_report.state;
    if (!url.empty() && state == "in_progress")
        m_monitor->downloadBegan(url);
    else if (!url.empty() && (state == "interrupted" || state == "complete"))
        m_monitor->downloadEnded(url);
    else
        response->error = pmxTaskErrors::invalidArguments;
    callback(task, response);
}
