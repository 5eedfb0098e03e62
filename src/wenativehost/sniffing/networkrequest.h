#pragma once

#include "playlist.h"
#include "pmxkovbhipcdownloadinfo.h"

#include <QtGlobal>

#include <memory>
#include <optional>
#include <string>

using MediaKind = pmxKovBhIpcDownloadInfo::MediaKind;

/// What is known about one request of the browser. Texts are as the browser reported them.
struct NetworkRequest {
    enum class State {
        Sent, ///< no answer yet, or redirected
        Answered, ///< the response headers are there
        Completed,
        Failed,
    };
    /// What it is worth remembering for, as MediaRequestsCollector judges it.
    enum class Worth {
        Unjudged, ///< something was told of it since
        Ordinary,
        Part, ///< a playlist that is part of another one
        Media,
    };

    std::string id;
    /// The current URL: after a redirect the new one.
    std::string url;
    /// The URL before redirects.
    std::string originalUrl;
    /// The page on which it was made.
    std::string pageUrl;
    std::string method;
    std::string requestHeaders;
    std::string responseHeaders;
    /// The playlist that it fetched; null unless the browser passed its text on.
    std::shared_ptr<const Playlist> playlist;
    /// An earlier host found that its playlist is part of another one.
    bool isKnownPart = false;
    /// What an earlier request for the same told of the size of the whole, in bytes.
    std::optional<quint64> knownSize;
    /// The HTTP status; 0 while unknown.
    int status = 0;
    State state = State::Sent;
    Worth worth = Worth::Unjudged;
    /// What its answer is, as it was judged.
    MediaKind kind = MediaKind::NoMediaKind;
    /// Counts up from request to request in the order of their beginning.
    quint64 number = 0;
    /// When the browser last told of it, on the clock's monotonic scale.
    qint64 changedMs = 0;

    bool isFinished() const { return state == State::Completed || state == State::Failed; }
    bool isKept() const { return worth == Worth::Part || worth == Worth::Media; }

    /// What it holds beside its fixed size.
    size_t textBytes() const
    {
        return id.size() + url.size() + originalUrl.size() + pageUrl.size() + method.size()
            + requestHeaders.size() + responseHeaders.size() + (playlist ? playlist->bytes() : 0);
    }
};
