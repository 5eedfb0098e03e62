#include "browseractivitymonitor.h"

BrowserActivityMonitor::BrowserActivityMonitor(QObject *parent) : QObject(parent) { }

void BrowserActivityMonitor::downloadBegan(const std::string &url)
{
    const bool wasActive = isActive();
    if (const auto known = m_byUrl.find(url); known != m_byUrl.end()) {
        m_oldestFirst.splice(m_oldestFirst.end(), m_oldestFirst, known->second);
        return;
    }
    m_byUrl.emplace(url, m_oldestFirst.insert(m_oldestFirst.end(), url));
    if (m_byUrl.size() > maxUrls) {
        m_byUrl.erase(m_oldestFirst.front());
        m_oldestFirst.pop_front();
    }
    Q_EMIT downloadStarted(url);
    if (!wasActive)
        Q_EMIT activeChanged(true);
}

void BrowserActivityMonitor::downloadEnded(const std::string &url)
{
    const auto known = m_byUrl.find(url);
    if (known == m_byUrl.end())
        return;
    m_oldestFirst.erase(known->second);
    m_byUrl.erase(known);
    if (!isActive())
        Q_EMIT activeChanged(false);
}
