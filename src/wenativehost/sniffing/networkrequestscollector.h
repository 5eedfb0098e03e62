#pragma once

#include "networkrequest.h"
#include "qtclock.h"

#include <QObject>

#include <array>
#include <list>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

class pmxKovBhIpcTaskNetworkRequestNotification;

/**
 * The browser's recent requests, one entry per request id, assembled from its notifications:
 *
 * | type        | adds                                   | "data"                   |
 * |-------------|----------------------------------------|--------------------------|
 * | "request"   | URL, page and request headers          | method                   |
 * | "response"  | response headers                       | HTTP status              |
 * | "redirect"  | the new URL                            | new URL                  |
 * | "playlist"  | the URLs in a playlist that it fetched | text                     |
 * | "part"      | that its playlist is part of another   |                          |
 * | "completed" | that it succeeded                      |                          |
 * | "failed"    | that it failed                         |                          |
 *
 * Other types are ignored. A "request" with a known id continues that request if its URL is the
 * request's current one, as after a redirect; otherwise, or if that one is finished, it is a new
 * one.
 *
 * The requests are limited in number, in the bytes of their texts and, except those marked as worth
 * keeping, in the time since the last notification. Finished ones are dropped first and those worth
 * keeping last, the least recently notified of them first. A request whose own texts exceed the
 * limit is not kept. The cost of a notification does not depend on the number of requests. Belongs
 * to one thread.
 */
class NetworkRequestsCollector : public QObject {
    Q_OBJECT
public:
    static constexpr size_t maxRequests = 2000;
    static constexpr qint64 maxAgeMs = qint64{10} * 60 * 1000;
    static constexpr size_t maxTextBytes = size_t{16} * 1024 * 1024;

    explicit NetworkRequestsCollector(QObject *parent = nullptr,
                                      QtClock &clock = QtClock::system());

    void process(const pmxKovBhIpcTaskNetworkRequestNotification &notification);

    /// Moves the requests of one page to another.
    void changePageUrl(const std::string &fromUrl, const std::string &toUrl);
    void forgetPage(const std::string &pageUrl);
    /// Forgets the requests of that URL, before or after redirects, whatever their page.
    void forgetUrl(const std::string &url);

    /// Sets why to keep a request; it must be known.
    void judge(const std::string &requestId, NetworkRequest::Worth worth, MediaKind kind);
    /// Merges an older request for the same resource into a later one, and drops it. Both must be
    /// known.
    void replace(const std::string &olderId, const std::string &laterId,
                 std::optional<quint64> knownSize);

    QtClock &clock() const { return m_clock; }
    /// Null if it is not (or no longer) known. Valid until the next call of a non-const function.
    const NetworkRequest *request(const std::string &requestId) const;
    /// Those that are not too old, finished ones first and kept ones last. As valid as request().
    std::vector<const NetworkRequest *> requests() const;

Q_SIGNALS:
    /// There was a notification about a request of the page, or a kept one was dropped.
    void pageChanged(const std::string &pageUrl);

private:
    using Requests = std::list<NetworkRequest>;

    void begin(const pmxKovBhIpcTaskNetworkRequestNotification &notification);
    void update(Requests::iterator request,
                const pmxKovBhIpcTaskNetworkRequestNotification &notification);
    /// Moves the request from that list to the end of the list to which it belongs now.
    void moveToItsList(Requests &from, Requests::iterator request);
    Requests &listOf(const NetworkRequest &request);
    bool isTooOld(const NetworkRequest &request) const;
    void forget(Requests &list, Requests::iterator request);
    template <typename Predicate> void forgetIf(Predicate predicate);
    void keepWithinBounds();

    QtClock &m_clock;
    /// The finished, the unfinished and the kept ones, each in the order of the last notification,
    /// oldest first.
    std::array<Requests, 3> m_lists;
    std::unordered_map<std::string_view, Requests::iterator> m_byId;
    size_t m_textBytes = 0;
    quint64 m_lastNumber = 0;
};
