#pragma once

#include "pmxkovbhipctaskprocessor.h"

#include <QSharedPointer>

class BrowserActivityMonitor;
class BrowserTabsRequestsTracker;
class NetworkRequestsCollector;
class PageMediaNotifier;

/**
 * "network_request_notification": events of the browser's requests and tabs. Each is answered at
 * once with a plain response, and passed to the collector ("request", "response", "redirect",
 * "playlist", "part", "completed", "failed") or to the tabs tracker ("tab_navigated",
 * "tab_url_changed", both with the new URL in "data", and "tab_closed"). "media_wanted" subscribes
 * to the media that are found.
 *
 * Requests of the browser's own downloads are not collected.
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
