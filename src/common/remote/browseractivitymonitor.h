#pragma once

#include <QObject>

#include <cstddef>
#include <list>
#include <string>
#include <unordered_map>

/**
 * What the browser is downloading by itself: the URLs whose download it reported as begun and not
 * yet as ended. Their requests are no business of the host. Belongs to one thread.
 */
class BrowserActivityMonitor : public QObject {
    Q_OBJECT
public:
    /// More URLs than this are not remembered; the one heard of longest ago is dropped.
    static constexpr size_t maxUrls = 2000;

    explicit BrowserActivityMonitor(QObject *parent = nullptr);

    void downloadBegan(const std::string &url);
    void downloadEnded(const std::string &url);

    bool isDownloading(const std::string &url) const { return m_byUrl.contains(url); }
    bool isActive() const { return !m_byUrl.empty(); }

Q_SIGNALS:
    /// The first download began, or the last one ended.
    void activeChanged(bool active);
    void downloadStarted(const std::string &url);

private:
    std::list<std::string> m_oldestFirst;
    std::unordered_map<std::string, std::list<std::string>::iterator> m_byUrl;
};
