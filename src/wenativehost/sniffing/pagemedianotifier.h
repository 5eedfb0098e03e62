#pragma once

#include "recenturls.h"

#include <QObject>
#include <QSharedPointer>
#include <QWeakPointer>

#include <string>

class ConsoleMessagesSender;
class MediaRequestsAnalyzer;
class MediaRequestsCollector;

/**
 * Tells the extension what was found on its pages, in messages with an empty id: from start() on,
 * each time that it changes. The list is in the order in which the analyzer ranks the page's media,
 * so that the first entry is the one that "Download video" gets. Belongs to one thread.
 */
class PageMediaNotifier : public QObject {
    Q_OBJECT
public:
    PageMediaNotifier(QSharedPointer<MediaRequestsCollector> media,
                      QSharedPointer<MediaRequestsAnalyzer> analyzer,
                      QWeakPointer<ConsoleMessagesSender> sender, QObject *parent = nullptr);

    /// The extension wants to know.
    void start() { m_isWanted = true; }

private:
    void onPageSettled(const std::string &pageUrl);

    const QSharedPointer<MediaRequestsCollector> m_media;
    const QSharedPointer<MediaRequestsAnalyzer> m_analyzer;
    const QWeakPointer<ConsoleMessagesSender> m_sender;
    bool m_isWanted = false;
    /// Hashes of the last messages on the pages that have media.
    RecentUrls<size_t> m_told;
};
