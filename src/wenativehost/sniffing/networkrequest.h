#pragma once

#include <QtGlobal>

#include <string>

/// What became known of one request that the browser made. Texts are as the browser gave them.
struct NetworkRequest {
    enum class State {
        Sent, ///< no answer yet, or redirected
        Answered, ///< the response headers are there
        Completed,
        Failed,
    };

    std::string id;
    /// Where it goes now: after a redirect the new place.
    std::string url;
    /// Where it went at first.
    std::string originalUrl;
    /// The page on which it was made.
    std::string pageUrl;
    std::string method;
    std::string requestHeaders;
    std::string responseHeaders;
    /// The text of the playlist that it fetched, where the browser passed it on.
    std::string playlist;
    /// The HTTP status; 0 while unknown.
    int status = 0;
    State state = State::Sent;
    /// Counts up from request to request in the order of their beginning.
    quint64 number = 0;
    /// When the browser last told of it, on the clock's monotonic scale.
    qint64 changedMs = 0;

    bool isFinished() const { return state == State::Completed || state == State::Failed; }

    /// What it holds beside its fixed size.
    size_t textBytes() const
    {
        return id.size() + url.size() + originalUrl.size() + pageUrl.size() + method.size()
            + requestHeaders.size() + responseHeaders.size() + playlist.size();
    }
};
