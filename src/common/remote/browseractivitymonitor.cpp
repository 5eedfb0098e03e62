#include "browseractivitymonitor.h"

BrowserActivityMonitor::BrowserActivityMonitor(QObject *parent) : QObject(parent) { }

void BrowserActivityMonitor::downloadBegan(const std::string &url)
{
    const bool isNew = !isDownloading(url);
    m_urls.touch(url);
    if (isNew)
        Q_EMIT downloadStarted(url);
}

void BrowserActivityMonitor::downloadEnded(const std::string &url) { m_urls.remove(url); }
