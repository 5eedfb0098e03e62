#pragma once

#include "mediarequest.h"

#include <QObject>
#include <QSharedPointer>

#include <vector>

class NetworkRequestsCollector;

/**
 * The media among the requests that were collected.
 *
 * Media is told by its type, else by its file name. Failed requests and errors, the pieces of a
 * stream whose playlist was seen on the page, and answers known to be smaller than minSize are not
 * media. The parts of one resource on one page are one entry with the size of the whole.
 *
 * Everything is worked out when it is asked for, so that a notification costs nothing here.
 */
class MediaRequestsCollector : public QObject {
    Q_OBJECT
public:
    /// In bytes. What is smaller is a sound effect, a beacon or a placeholder; playlists are not
    /// measured.
    static constexpr quint64 minSize = quint64{64} * 1024;

    explicit MediaRequestsCollector(QSharedPointer<NetworkRequestsCollector> requests,
                                    QObject *parent = nullptr);

    /// All media, oldest first.
    std::vector<MediaRequest> mediaRequests() const;
    /// One request by its id, whether it passes as media or not; nothing if it is not known.
    std::optional<MediaRequest> request(const std::string &requestId) const;
    /// The same for a request of that URL, before or after redirects: one that was answered well
    /// rather than another one, one of that page rather than of another, a newer one rather than an
    /// older one.
    std::optional<MediaRequest> requestOf(const std::string &url, const std::string &pageUrl) const;

private:
    const QSharedPointer<NetworkRequestsCollector> m_requests;
};
