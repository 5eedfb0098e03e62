#pragma once

#include "pmxkovbhipctaskprocessor.h"

#include <QSharedPointer>

class BrowserActivityMonitor;
class BrowserTabsRequestsTracker;
class NetworkRequestsCollector;
class PageMediaNotifier;

/**
 * "network_request_notification": what the browser tells of its requests and tabs. Every
 * notification is answered at once with a plain response; what it says goes to the collector
 * ("request", "response", "redirect", "playlist", "part", "completed", "failed") or the tabs
 * tracker
 * ("tab_navigated", "tab_url_changed", both with the new URL in "data", and "tab_closed").
 * "media_wanted" asks to be told what is found.
 *
 * Requests of what the browser downloads by itself are not collected.
 */
class pmxKovBhIpcNetworkRequestNotificationTaskProcessor : public pmxKovBhIpcTaskProcessor {
    Q_OBJECT
public:
    pmxKovBhIpcNetworkRequestNotificationTaskProcessor(
        QSharedPointer<BrowserActivityMonitor> monitor,
        QSharedPointer<NetworkRequestsCollector> requests,
        QSharedPointer<BrowserTabsRequestsTracker> tabs,
        QSharedPointer<PageMediaNotifier> notifier = {});

    void process(std::shared_ptr<pmxKovBhIpcTask> task, Callback callback) override;

private:
    const QSharedPointer<BrowserActivityMonitor> m_monitor;
    const QSharedPointer<NetworkRequestsCollector> m_requests;
    const QSharedPointer<BrowserTabsRequestsTracker> m_tabs;
    const QSharedPointer<PageMediaNotifier> m_notifier;
};
