#pragma once

#include "networkrequest.h"
#include "qtclock.h"

#include <QObject>

#include <list>
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
 * | "playlist"  | the text of a playlist that it fetched | text                     |
 * | "completed" | that it ended well                     |                          |
 * | "failed"    | that it did not                        |                          |
 *
 * Other types are ignored. A "request" with a known id goes on with that request if it names the
 * place where the request goes now, as after a redirect; otherwise, and when that one is finished,
 * it is a new one.
 *
 * What is kept is bounded by number, by age since the last notification and by the bytes of the
 * texts; what goes first is finished, and among those what the browser told of longest ago. A
 * playlist is as young as the latest request of its page: players fetch the pieces of a stream long
 * after it, and without it they would pass for media. A request whose texts alone are beyond the
 * bound is not kept. One notification costs the same however many requests are held. Belongs to one
 * thread.
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
    void forget(const std::string &requestId);
    /// Forgets the requests of that URL, before or after redirects, whatever their page.
    void forgetUrl(const std::string &url);

    size_t size() const { return m_byId.size(); }
    size_t textBytes() const { return m_textBytes; }
    /// Null if it is not (or no longer) known. Valid until the next call of a non-const function.
    const NetworkRequest *request(const std::string &requestId) const;
    /// Those that are not too old, unfinished ones last. Valid as request() is.
    std::vector<const NetworkRequest *> requests() const;

Q_SIGNALS:
    void requestForgotten(const std::string &requestId);

private:
    using Requests = std::list<NetworkRequest>;

    void begin(const pmxKovBhIpcTaskNetworkRequestNotification &notification);
    void update(Requests::iterator request,
                const pmxKovBhIpcTaskNetworkRequestNotification &notification);
    Requests &listOf(const NetworkRequest &request);
    bool isTooOld(qint64 changedMs) const;
    bool isTooOld(const NetworkRequest &request) const;
    /// When the browser told of the request or, of a playlist, of another request of its page.
    qint64 changedMs(const NetworkRequest &request) const;
    void forget(Requests &list, Requests::iterator request);
    /// The oldest of the finished ones is moved to where its page's latest request puts it.
    void moveToChanged(qint64 changedMs);
    void keepWithinBounds();

    QtClock &m_clock;
    /// Both in the order of the last notification, oldest first.
    Requests m_finished;
    Requests m_unfinished;
    std::unordered_map<std::string, Requests::iterator> m_byId;
    size_t m_textBytes = 0;
    quint64 m_lastNumber = 0;
};
