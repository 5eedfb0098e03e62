#pragma once

#include "recenturls.h"

#include <QObject>

#include <string>

/**
 * What the browser is downloading by itself: the URLs whose download it reported as begun and not
 * yet as ended, as many of them as RecentUrls keeps. Their requests are no business of the host.
 * Belongs to one thread.
 */
class BrowserActivityMonitor : public QObject {
    Q_OBJECT
public:
    explicit BrowserActivityMonitor(QObject *parent = nullptr);

    void downloadBegan(const std::string &url);
    void downloadEnded(const std::string &url);

    bool isDownloading(const std::string &url) const { return m_urls.find(url) != nullptr; }

Q_SIGNALS:
    void downloadStarted(const std::string &url);

private:
    struct Nothing { };
    RecentUrls<Nothing> m_urls;
};
