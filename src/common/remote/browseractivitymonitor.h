#pragma once

#include "recenturls.h"

#include <QObject>

#include <string>

/**
 * The browser's own current downloads: the URLs whose download it reported as in progress and not
 * yet as ended, within the limits of RecentUrls. The host ignores their requests. Belongs to one
 * thread.
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
