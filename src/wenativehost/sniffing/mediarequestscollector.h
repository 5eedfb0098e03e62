#pragma once

#include "mediarequest.h"
#include "qtsingleshottimer.h"
#include "recenturls.h"

#include <QObject>
#include <QSharedPointer>

#include <memory>
#include <vector>

class NetworkRequestsCollector;

/**
 * The media among the requests that were collected.
 *
 * Media are recognized by their type, else by their file name. Failed requests, error responses,
 * the segments of a stream whose playlist was seen on the page, and responses known to be smaller
 * than minSize are not media. The ranges of one resource on one page are one entry with the size of
 * the whole.
 *
 * A page is evaluated when it is queried, and settleMs after an event on it, so that the events
 * themselves cost nothing here. Media, and the playlists that are parts of others, are kept as long
 * as their page is shown: the latest ones of each page.
 */
class MediaRequestsCollector : public QObject {
    Q_OBJECT
public:
    /// In bytes. Smaller responses are sound effects, beacons or placeholders. Does not apply to
    /// playlists.
    static constexpr quint64 minSize = quint64{64} * 1024;
    static constexpr int settleMs = 200;
    /// Of one page.
    static constexpr size_t maxMedia = 50;
    static constexpr size_t maxParts = 100;

    explicit MediaRequestsCollector(QSharedPointer<NetworkRequestsCollector> requests,
                                    QObject *parent = nullptr);

    /// All media, oldest first. There may be two of a resource that is being fetched again.
    std::vector<MediaRequest> mediaRequests();
    /// The playlists of a page that are parts of others, oldest first.
    std::vector<MediaRequest> partsOf(const std::string &pageUrl);
    /// One request by its id, whether or not it is media; nothing if it is not known.
    std::optional<MediaRequest> request(const std::string &requestId) const;
    /// The same for a request of that URL, before or after redirects. Preferred are successful
    /// ones, then those of that page, then newer ones.
    std::optional<MediaRequest> requestOf(const std::string &url, const std::string &pageUrl) const;

Q_SIGNALS:
    /// The media of the page may have changed.
    void pageSettled(const std::string &pageUrl);

private:
    struct Nothing { };

    void onPageChanged(const std::string &pageUrl);
    void settle();
    using Requests = std::vector<const NetworkRequest *>;
    void settlePage(const Requests &answered);
    /// Determines the kinds of the requests, and returns the latest for each resource that may be
    /// media, oldest first.
    Requests latestMedia(const Requests &answered);
    template <typename Predicate> std::vector<MediaRequest> kept(Predicate predicate);

    const QSharedPointer<NetworkRequestsCollector> m_requests;
    const std::unique_ptr<QtSingleShotTimer> m_timer;
    RecentUrls<Nothing> m_changedPages;
};
