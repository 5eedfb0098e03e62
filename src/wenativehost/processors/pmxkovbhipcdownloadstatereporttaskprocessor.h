#pragma once

#include "pmxkovbhipctaskprocessor.h"

#include <QSharedPointer>

class BrowserActivityMonitor;

/**
 * "browser_download_state_report": the browser reports that it is downloading a URL itself
 * ("in_progress"), or no longer does ("interrupted", "complete"). Answered at once; another state,
 * or no URL, with the error "invalid arguments".
 */
class pmxKovBhIpcDownloadStateReportTaskProcessor : public pmxKovBhIpcTaskProcessor {
    Q_OBJECT
public:
    explicit pmxKovBhIpcDownloadStateReportTaskProcessor(
        QSharedPointer<BrowserActivityMonitor> monitor);

    void process(std::shared_ptr<pmxKovBhIpcTask> task, Callback callback) override;

private:
    const QSharedPointer<BrowserActivityMonitor> m_monitor;
};
