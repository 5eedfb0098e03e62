#pragma once

#include "playlist.h"
#include "pmxkovbhipcdownloadinfo.h"

#include <QtGlobal>

#include <memory>
#include <optional>
#include <string>

using MediaKind = pmxKovBhIpcDownloadInfo::MediaKind;

/// One request of the browser, from its events. Texts are as the browser reported them.
struct NetworkRequest {
    enum class State {
        Sent, ///< no response yet, or redirected
        Answered, ///< the response headers have arrived
        Completed,
        Failed,
    };
    /// Why to keep it, as determined by MediaRequestsCollector.
    enum class Worth {
        Unjudged, ///< not evaluated since its last event
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
    /// The playlist that it fetched; null unless the extension sent its text.
    std::shared_ptr<const Playlist> playlist;
    /// According to an earlier host, its playlist is part of another one.
    bool isKnownPart = false;
    /// The size of the whole from an earlier request for the same resource, in bytes.
    std::optional<quint64> knownSize;
    /// The HTTP status; 0 while unknown.
    int status = 0;
    State state = State::Sent;
    Worth worth = Worth::Unjudged;
    /// The kind of its response, as determined.
    MediaKind kind = MediaKind::NoMediaKind;
    /// A sequence number, in the order in which the requests began.
    quint64 number = 0;
    /// The time of its last event, on the monotonic clock.
    qint64 changedMs = 0;

    bool isFinished() const { return state == State::Completed || state == State::Failed; }
    bool isKept() const { return worth == Worth::Part || worth == Worth::Media; }

    /// The memory that it uses besides its fixed size.
    size_t textBytes() const
    {
        return id.size() + url.size() + originalUrl.size() + pageUrl.size() + method.size()
            + requestHeaders.size() + responseHeaders.size() + (playlist ? playlist->bytes() : 0);
    }
};
