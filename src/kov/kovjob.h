#pragma once

#include "kovranges.h"

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QNetworkCookie>
#include <QString>
#include <QUrl>

/// What is needed to request one file.
struct KovDownloadRequest {
    QUrl url = {};
    /// As the browser gave it; may be empty, like all that follow.
    QString referrer = {};
    QString userAgent = {};
    /// For the URL's host, unless they name another domain.
    QList<QNetworkCookie> cookies = {};
    /// The body of a POST; with an empty one the request is a GET.
    QByteArray postData = {};
    QString suggestedName = {};
    /// The size known to the browser from the server; -1 if unknown.
    qint64 announcedBytes = -1;
    /// The URL is that of the playlist of a stream, which is to be saved as one file.
    bool isStream = false;
};

/// The validators of the file (RFC 9110, 8.8): an answer with other values is another file.
struct KovValidators {
    QByteArray etag = {};
    QByteArray lastModified = {};

    /// The value of an If-Range field (RFC 9110, 13.1.5); empty without a strong validator.
    QByteArray ifRange() const
    {
        return !etag.isEmpty() && !etag.startsWith("W/") ? etag : lastModified;
    }
    bool operator==(const KovValidators &) const = default;
};

/// One download as it is stored and shown.
struct KovJob {
    /// Stored by number: never changed.
    enum class State {
        /// For its turn, or for the next attempt.
        Waiting = 0,
        Running = 1,
        /// By the user.
        Paused = 2,
        Finished = 3,
        /// Not retried automatically.
        Failed = 4,
    };

    qint64 id = 0;
    State state = State::Waiting;
    QUrl url = {};
    /// -1 while unknown.
    qint64 totalBytes = -1;
    /// Consecutive attempts without progress.
    int attempts = 0;
    /// Why it failed, or why it waits for the next attempt. Free of control characters.
    QString error = {};
    /// The path of the finished file; before that, the path that it is meant for.
    QString path = {};
    /// The partial file; empty before the first good answer and after the end.
    QString partialPath = {};
    KovValidators validators = {};
    /// The ranges of the partial file that are on the disk.
    KovRanges ranges = {};
    QDateTime added = {};
    QDateTime finished = {};

    /// The results of a transfer.
    void takeProgress(const KovJob &transferred)
    {
        totalBytes = transferred.totalBytes;
        path = transferred.path;
        partialPath = transferred.partialPath;
        validators = transferred.validators;
        ranges = transferred.ranges;
    }
    qint64 receivedBytes() const { return ranges.receivedBytes(); }
    /// The finished share, from 0 to 1; -1 while unknown.
    double doneShare() const { return doneShare(receivedBytes()); }
    double doneShare(qint64 received) const
    {
        return totalBytes > 0 ? static_cast<double>(received) / static_cast<double>(totalBytes)
                              : -1;
    }
    /// Neither finished nor given up.
    bool isUnderWay() const { return state == State::Waiting || state == State::Running; }
};

/// "waiting", "running", "paused", "finished", "failed".
QString stateName(KovJob::State state);
