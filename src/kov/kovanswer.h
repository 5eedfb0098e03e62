#pragma once

#include "kovjob.h"

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QUrl>

class QNetworkReply;

/// Why an attempt failed, and whether to retry.
struct KovFailure {
    enum class Kind {
        None,
        /// Transient: a timeout, a broken connection, a busy server.
        Passing,
        /// Permanent: a retry would fail, too.
        Lasting,
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

KovFailure passingFailure(const QString &text);
KovFailure lastingFailure(const QString &text);

/// The text with everything replaced that a terminal, a log or a notification would not show but
/// obey: control and formatting characters, and half characters.
QString printable(const QString &text);

/// A time in the form that HTTP has for it (RFC 9110, 5.6.7); invalid for any other text.
QDateTime toHttpDate(const QByteArray &text);

/// What a server says before the first byte of a file.
struct KovAnswer {
    int status = 0;
    QUrl url = {};
    /// Of the whole file; -1 when it does not say.
    qint64 totalBytes = -1;
    /// Of the body of this answer; -1 when it does not say.
    qint64 bodyBytes = -1;
    /// With which byte of the file the body begins.
    qint64 from = 0;
    bool acceptsRanges = false;
    KovValidators validators = {};
    /// In lower case; empty when the body is the file itself.
    QByteArray contentEncoding = {};
    QByteArray contentType = {};
    QString fileName = {};
    /// What is wrong with the answer itself, whatever was asked.
    KovFailure failure = {};

    /// Of a reply whose header is there. When the name of the file says that it is compressed and
    /// so does its type, the encoding is a mistake of the server, and left out.
    static KovAnswer of(const QNetworkReply &reply);
    /// Whether a URL holds the file itself (RFC 2397): no server is asked for it.
    static bool isWithin(const QUrl &url);
};

/// Whether the answer to the first request for a file is the file that was announced.
KovFailure checkFirstAnswer(const KovAnswer &answer, const KovDownloadRequest &request);
/// Whether the body is the range that was asked for, of the file that we know.
KovFailure checkRangeAnswer(const KovAnswer &answer, qint64 from, const KovJob &job);
/// Why a reply has ended without being whole; none when it is.
KovFailure replyFailure(const QNetworkReply &reply);
