#include "pmxkovbhipcnetworkrequestnotificationtaskprocessor.h"

#include "browseractivitymonitor.h"
#include "browsertabsrequeststracker.h"
#include "networkrequestscollector.h"
#include "pagemedianotifier.h"
#include "pmxkovbhipctask.h"
#include "pmxkovbhipctaskresponse.h"
#include "pmxtaskresponses.h"

#include <utility>

pmxKovBhIpcNetworkRequestNotificationTaskProcessor::
    pmxKovBhIpcNetworkRequestNotificationTaskProcessor(
        QSharedPointer<BrowserActivityMonitor> monitor,
        QSharedPointer<NetworkRequestsCollector> requests,
        QSharedPointer<BrowserTabsRequestsTracker> tabs, QSharedPointer<PageMediaNotifier> notifier)
    : m_monitor(std::move(monitor)), m_requests(std::move(requests)), m_tabs(std::move(tabs)),
      m_notifier(std::move(notifier))
{
    connect(m_monitor.data(), &BrowserActivityMonitor::downloadStarted, m_requests.data(),
            &NetworkRequestsCollector::forgetUrl);
    connect(m_tabs.data(), &BrowserTabsRequestsTracker::pageLeft, m_requests.data(),
            &NetworkRequestsCollector::forgetPage);
    connect(m_tabs.data(), &BrowserTabsRequestsTracker::pageRenamed, m_requests.data(),
            &NetworkRequestsCollector::changePageUrl);
}

void pmxKovBhIpcNetworkRequestNotificationTaskProcessor::process(
    std::shared_ptr<pmxKovBhIpcTask> task, Callback callback)
{
    const auto &notification = task->network_request_notification;
    if (notification.type == "tab_navigated") {
        m_tabs->tabNavigated(notification.srcTabUrl, notification.data);
    } else if (notification.type == "tab_url_changed") {
        m_tabs->tabUrlChanged(notification.srcTabUrl, notification.data);
    } else if (notification.type == "tab_closed") {
        m_tabs->tabClosed(notification.srcTabUrl);
    } else if (notification.type == "media_wanted") {
        if (m_notifier)
            m_notifier->start();
    } else if (!m_monitor->isDownloading(notification.url)) {
        m_requests->process(notification);
    }

    const auto response = pmxResponseTo(*task);
    callback(task, response);
}
