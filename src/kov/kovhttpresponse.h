#pragma once

#include "kovjob.h"

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QUrl>

class QNetworkReply;

/// The status codes that are treated specially (RFC 9110, 15; RFC 6585, 4; RFC 8470, 5.2).
namespace KovHttpStatus {
constexpr int ok = 200;
constexpr int noContent = 204;
constexpr int resetContent = 205;
constexpr int partialContent = 206;
constexpr int lastSuccess = 299;
constexpr int requestTimeout = 408;
constexpr int rangeNotSatisfiable = 416;
constexpr int tooEarly = 425;
constexpr int tooManyRequests = 429;
constexpr int firstServerError = 500;
constexpr int notImplemented = 501;
constexpr int httpVersionNotSupported = 505;
constexpr int lastServerError = 599;
} // namespace KovHttpStatus

/// Why an attempt failed, and whether to retry.
struct KovFailure {
    enum class Kind {
        None,
        /// A timeout, a broken connection, a busy server.
        Transient,
        /// A retry would fail, too.
        Permanent,
        /// The file does not fit on the disk.
        NoRoom,
        /// The disk is full.
        DiskFull,
    };

    Kind kind = Kind::None;
    /// Free of control characters.
    QString text = {};
    /// The server's Retry-After; -1 if it sent none.
    qint64 retryAfterMs = -1;

    explicit operator bool() const { return kind != Kind::None; }
};

KovFailure transientFailure(const QString &text);
KovFailure permanentFailure(const QString &text);

/// The text with control and formatting characters and unpaired surrogates replaced, which a
/// terminal, a log or a notification would interpret instead of showing them.
QString printable(const QString &text);

/// Parses an HTTP date (RFC 9110, 5.6.7); invalid for any other text.
QDateTime toHttpDate(const QByteArray &text);

/// The information in a server's response before the first byte of a file.
struct KovHttpResponse {
    int status = 0;
    QUrl url = {};
    /// Of the whole file; -1 if unknown.
    qint64 totalBytes = -1;
    /// Of the body of this response; -1 if unknown.
    qint64 bodyBytes = -1;
    /// The offset in the file at which the body begins.
    qint64 from = 0;
    bool acceptsRanges = false;
    KovValidators validators = {};
    /// In lower case; empty when the body is the file itself.
    QByteArray contentEncoding = {};
    QByteArray contentType = {};
    QString fileName = {};
    /// What is wrong with the response itself, whatever the request.
    KovFailure failure = {};

    /// Of a reply whose headers have arrived. If both name and type of the file are those of a
    /// compressed one, the encoding is a mistake of the server, and is left out.
    static KovHttpResponse of(const QNetworkReply &reply);
    /// Whether a URL contains the file itself (RFC 2397), so that there is no server.
    static bool isDataUrl(const QUrl &url);
};

/// Whether the response to the first request for a file is the file that was announced.
KovFailure checkFirstResponse(const KovHttpResponse &response, const KovDownloadRequest &request);
/// Whether the body is the requested range, of the same file as before.
KovFailure checkRangeResponse(const KovHttpResponse &response, qint64 from, const KovJob &job);
/// Why a reply is incomplete; none if it is complete.
KovFailure replyFailure(const QNetworkReply &reply);
