#include "pmxkovbhipcnetworkrequestnotificationtaskprocessor.h"

#include "browseractivitymonitor.h"
#include "browsertabsrequeststracker.h"
#include "networkrequestscollector.h"
#include "pmxkovbhipctask.h"
#include "pmxkovbhipctaskresponse.h"
#include "pmxtaskresponses.h"

#include <utility>

pmxKovBhIpcNetworkRequestNotificationTaskProcessor::
    pmxKovBhIpcNetworkRequestNotificationTaskProcessor(
        QSharedPointer<BrowserActivityMonitor> monitor,
        QSharedPointer<NetworkRequestsCollector> requests,
        QSharedPointer<BrowserTabsRequestsTracker> tabs)
    : m_monitor(std::move(monitor)), m_requests(std::move(requests)), m_tabs(std::move(tabs))
{
    connect(m_monitor.data(), &BrowserActivityMonitor::downloadStarted, m_requests.data(),
            &NetworkRequestsCollector::forgetUrl);
    connect(m_requests.data(), &NetworkRequestsCollector::requestForgotten, m_tabs.data(),
            &BrowserTabsRequestsTracker::removeRequest);
    connect(m_tabs.data(), &BrowserTabsRequestsTracker::requestAbandoned, m_requests.data(),
            qOverload<const std::string &>(&NetworkRequestsCollector::forget));
    connect(m_tabs.data(), &BrowserTabsRequestsTracker::requestsMoved, m_requests.data(),
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
    } else if (!m_monitor->isActive() || !m_monitor->isDownloading(notification.url)) {
        m_requests->process(notification);
        if (notification.type == "request" && m_requests->request(notification.requestId))
            m_tabs->addRequest(notification.srcTabUrl, notification.requestId);
    }

    const auto response = pmxResponseTo(*task);
    callback(task, response);
}
