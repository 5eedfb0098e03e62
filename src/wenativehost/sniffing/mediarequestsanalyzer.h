#pragma once

#include "mediarequest.h"

#include <QObject>
#include <QSharedPointer>

#include <vector>

class MediaRequestsCollector;
class pmxFlvSniffCallProcTask;

/// Ranks the media of a page, to choose the one for "Download video".
class MediaRequestsAnalyzer : public QObject {
    Q_OBJECT
public:
    explicit MediaRequestsAnalyzer(QSharedPointer<MediaRequestsCollector> media,
                                   QObject *parent = nullptr);

    /**
     * The candidates, best first, each resource once.
     *
     * For a task with a request id or a URL, exactly that one is the only candidate, or there is
     * none. Otherwise: the media of the frame, then of the page, then the URLs in the parameters of
     * the page's player; within each group playlists before single files, larger before smaller
     * (unknown sizes last), newer before older.
     */
    std::vector<MediaRequest> candidates(const pmxFlvSniffCallProcTask &task) const;

private:
    std::optional<MediaRequest> named(const pmxFlvSniffCallProcTask &task) const;
    std::vector<MediaRequest> observed(const pmxFlvSniffCallProcTask &task) const;

    const QSharedPointer<MediaRequestsCollector> m_media;
};
