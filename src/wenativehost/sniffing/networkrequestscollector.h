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
 * The requests that the browser made lately, one entry per request id, put together from its
 * notifications:
 *
 * | type        | adds                                   | "data"                   |
 * |-------------|----------------------------------------|--------------------------|
 * | "request"   | URL, page and request headers          | method                   |
 * | "response"  | response headers                       | HTTP status              |
 * | "redirect"  | the new URL                            | new URL                  |
 * | "playlist"  | what a playlist that it fetched names  | text                     |
 * | "part"      | that its playlist is part of another   |                          |
 * | "completed" | that it ended well                     |                          |
 * | "failed"    | that it did not                        |                          |
 *
 * Other types are ignored. A "request" with a known id goes on with that request if it names the
 * place where the request goes now, as after a redirect; otherwise, and when that one is finished,
 * it is a new one.
 *
 * What is kept is bounded by number, by the bytes of the texts and, but for what was judged worth
 * keeping, by age since the last notification. What goes first is finished, what goes last worth
 * keeping; among equals, what the browser told of longest ago. A request whose texts alone are
 * beyond the bound is not kept. One notification costs the same however many requests are held.
 * Belongs to one thread.
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

    /// The requests of one page are those of another.
    void changePageUrl(const std::string &fromUrl, const std::string &toUrl);
    void forgetPage(const std::string &pageUrl);
    /// Forgets the requests of that URL, before or after redirects, whatever their page.
    void forgetUrl(const std::string &url);

    /// Says what a request is worth; it must be known.
    void judge(const std::string &requestId, NetworkRequest::Worth worth, MediaKind kind);
    /// A later request for the same takes over what an older one told, which is forgotten. Both
    /// must be known.
    void replace(const std::string &olderId, const std::string &laterId,
                 std::optional<quint64> knownSize);

    QtClock &clock() const { return m_clock; }
    /// Null if it is not (or no longer) known. Valid until the next call of a non-const function.
    const NetworkRequest *request(const std::string &requestId) const;
    /// Those that are not too old, finished ones first and kept ones last. Valid as request() is.
    std::vector<const NetworkRequest *> requests() const;

Q_SIGNALS:
    /// Something was told of a request of the page, or one that was kept is not there any more.
    void pageChanged(const std::string &pageUrl);

private:
    using Requests = std::list<NetworkRequest>;

    void begin(const pmxKovBhIpcTaskNetworkRequestNotification &notification);
    void update(Requests::iterator request,
                const pmxKovBhIpcTaskNetworkRequestNotification &notification);
    /// Moves the request, which was in that list, to the end of the list that is its own now.
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
