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
 * Notifies the extension of the media on its pages: from start() on, after each change. The list is
 * in the analyzer's order, so that the first entry is the one for "Download video". Belongs to one
 * thread.
 */
class PageMediaNotifier : public QObject {
    Q_OBJECT
public:
    PageMediaNotifier(QSharedPointer<MediaRequestsCollector> media,
                      QSharedPointer<MediaRequestsAnalyzer> analyzer,
                      QWeakPointer<ConsoleMessagesSender> sender, QObject *parent = nullptr);

    /// The extension subscribes.
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
