#pragma once

#include "mediarequest.h"

#include <QObject>
#include <QSharedPointer>

#include <vector>

class MediaRequestsCollector;
class pmxFlvSniffCallProcTask;

/// Ranks the media of a page, to choose the one that "Download video" means.
class MediaRequestsAnalyzer : public QObject {
    Q_OBJECT
public:
    explicit MediaRequestsAnalyzer(QSharedPointer<MediaRequestsCollector> media,
                                   QObject *parent = nullptr);

    /**
     * The candidates, best first, each resource once.
     *
     * A task that names a request id or a URL means exactly that one: it is the only candidate, or
     * there is none. Otherwise: the media of the frame, then of the page, then what the texts that
     * were handed to the page's player name; within each group playlists before single files,
     * larger before smaller (unknown sizes last), newer before older.
     */
    std::vector<MediaRequest> candidates(const pmxFlvSniffCallProcTask &task) const;

private:
    std::optional<MediaRequest> named(const pmxFlvSniffCallProcTask &task) const;
    std::vector<MediaRequest> observed(const pmxFlvSniffCallProcTask &task) const;

    const QSharedPointer<MediaRequestsCollector> m_media;
};
