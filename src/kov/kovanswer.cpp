#include "kovanswer.h"

#include "httpcontentdisposition.h"
#include "kovfilename.h"

#include <QFileInfo>
#include <QLocale>
#include <QNetworkReply>

#include <algorithm>

namespace {

constexpr int ok = 200;
constexpr int noContent = 204;
constexpr int resetContent = 205;
constexpr int partialContent = 206;
constexpr int lastSuccess = 299;
constexpr int requestTimeout = 408;
constexpr int tooEarly = 425;
constexpr int tooManyRequests = 429;
constexpr int firstServerError = 500;
constexpr int notImplemented = 501;
constexpr int httpVersionNotSupported = 505;
constexpr int lastServerError = 599;

constexpr qint64 millisecondsPerSecond = 1000;
/// The longest delay that a server can request (Retry-After).
constexpr qint64 longestRetryAfterMs = 3600 * millisecondsPerSecond;

/// Decimal digits only; -1 for anything else, and for a number that does not fit.
qint64 toLength(const QByteArray &text)
{
    const bool digits = !text.isEmpty()
        && std::all_of(text.cbegin(), text.cend(), [](char c) { return c >= '0' && c <= '9'; });
    bool fits = false;
    const qint64 length = text.toLongLong(&fits);
    return digits && fits ? length : -1;
}

qint64 retryAfter(const QNetworkReply &reply)
{
    const QByteArray value = reply.rawHeader("Retry-After").trimmed();
    if (const qint64 seconds = toLength(value); seconds >= 0)
        return std::min(seconds, longestRetryAfterMs / millisecondsPerSecond)
            * millisecondsPerSecond;
    // Relative to the Date header, since the local clock may be wrong.
    const QDateTime now = toHttpDate(reply.rawHeader("Date").trimmed());
    const QDateTime then = toHttpDate(value);
    return now.isValid() && then.isValid()
        ? std::clamp<qint64>(now.msecsTo(then), 0, longestRetryAfterMs)
        : -1;
}

bool isPassing(int status)
{
    return status == requestTimeout || status == tooEarly || status == tooManyRequests
        || (status >= firstServerError && status <= lastServerError && status != notImplemented
            && status != httpVersionNotSupported);
}

KovFailure statusFailure(const QNetworkReply &reply, int status)
{
    const QString reason =
        reply.attribute(QNetworkRequest::HttpReasonPhraseAttribute).toString().trimmed();
    const QString text = printable(
        QStringLiteral("the server answered %1 %2").arg(QString::number(status), reason).trimmed());
    return isPassing(status) ? KovFailure{KovFailure::Kind::Passing, text, retryAfter(reply)}
                             : lastingFailure(text);
}

/// "bytes FIRST-LAST/TOTAL", or "*" for a total that is not known (RFC 9110, 14.4).
bool parseContentRange(const QByteArray &value, KovAnswer &answer)
{
    if (!value.toLower().startsWith("bytes "))
        return false;
    const QByteArray range = value.mid(sizeof("bytes ") - 1).trimmed();
    const qsizetype dash = range.indexOf('-');
    const qsizetype slash = range.indexOf('/');
    if (dash < 0 || slash < dash)
        return false;
    answer.from = toLength(range.left(dash).trimmed());
    const qint64 last = toLength(range.mid(dash + 1, slash - dash - 1).trimmed());
    answer.totalBytes = toLength(range.mid(slash + 1).trimmed());
    const qint64 size = last - answer.from + 1;
    if (answer.from < 0 || size <= 0 || (answer.totalBytes >= 0 && last >= answer.totalBytes)
        || (answer.bodyBytes >= 0 && answer.bodyBytes != size))
        return false;
    answer.bodyBytes = size;
    return true;
}

bool isHtml(const QByteArray &contentType)
{
    return contentType == "text/html" || contentType == "application/xhtml+xml";
}

/// Whether the file extension says that the file is no web page.
bool promisesFile(const QString &name)
{
    static const QStringList pages{u"htm"_qs, u"html"_qs, u"xhtml"_qs, u"shtml"_qs,
                                   u"xht"_qs, u"php"_qs,  u"asp"_qs,   u"aspx"_qs,
                                   u"jsp"_qs, u"cgi"_qs,  u"mht"_qs,   u"mhtml"_qs};
    // Not every dot begins a file extension: "release-2.10".
    const QString ending = QFileInfo(name).suffix().toLower();
    return std::any_of(ending.cbegin(), ending.cend(), [](QChar c) { return c.isLetter(); })
        && !pages.contains(ending);
}

/// A compressed file that the server declares as a Content-Encoding, a common misconfiguration.
bool isCompressedFile(const KovAnswer &answer)
{
    static const QByteArrayList types{"application/gzip", "application/x-gzip",
                                      "application/x-gunzip", "application/x-compressed"};
    static const QStringList endings{u"gz"_qs, u"tgz"_qs, u"svgz"_qs};
    const QString name =
        answer.fileName.isEmpty() ? KovFileName::fromUrl(answer.url) : answer.fileName;
    return types.contains(answer.contentType)
        || endings.contains(QFileInfo(name).suffix().toLower());
}

} // namespace

KovFailure passingFailure(const QString &text)
{
    return {KovFailure::Kind::Passing, printable(text)};
}

KovFailure lastingFailure(const QString &text)
{
    return {KovFailure::Kind::Lasting, printable(text)};
}

QString printable(const QString &text)
{
    QString result;
    const QList<uint> characters = text.toUcs4();
    for (const char32_t c : characters) {
        switch (QChar::category(c)) {
        case QChar::Other_Control:
        case QChar::Other_Format:
        case QChar::Other_Surrogate:
        case QChar::Separator_Line:
        case QChar::Separator_Paragraph:
            result += QChar(QChar::ReplacementCharacter);
            break;
        default:
            result += QString::fromUcs4(&c, 1);
        }
    }
    return result;
}

QDateTime toHttpDate(const QByteArray &text)
{
    QDateTime time = QLocale::c().toDateTime(QString::fromLatin1(text),
                                             QStringLiteral("ddd, dd MMM yyyy hh:mm:ss 'GMT'"));
    time.setTimeSpec(Qt::UTC);
    return time;
}

bool KovAnswer::isWithin(const QUrl &url) { return url.scheme() == u"data"; }

KovAnswer KovAnswer::of(const QNetworkReply &reply)
{
    KovAnswer answer;
    const bool isHere = isWithin(reply.url()) && reply.error() == QNetworkReply::NoError;
    answer.status = isHere ? ok : reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    answer.url = reply.url();
    answer.validators = {reply.rawHeader("ETag").trimmed(),
                         reply.rawHeader("Last-Modified").trimmed()};
    answer.contentType =
        reply.rawHeader("Content-Type").split(';').constFirst().trimmed().toLower();
    answer.contentEncoding = reply.rawHeader("Content-Encoding").trimmed().toLower();
    answer.fileName = KovFileName::sanitized(
        fileNameFromContentDisposition(reply.rawHeader("Content-Disposition").toStdString()));
    if (answer.contentEncoding == "identity" || isCompressedFile(answer))
        answer.contentEncoding.clear();

    if (answer.status < ok || answer.status > lastSuccess) {
        answer.failure = statusFailure(reply, answer.status);
        return answer;
    }
    if (answer.status == noContent || answer.status == resetContent) {
        answer.failure = lastingFailure(QStringLiteral("the server sent no file"));
        return answer;
    }
    // Chunks decide, whatever the length says (RFC 9112, 6.3).
    const bool hasLength = reply.hasRawHeader("Content-Length")
        && !reply.rawHeader("Transfer-Encoding").toLower().contains("chunked");
    // Repeated, it comes as a list.
    const QByteArrayList lengths = reply.rawHeader("Content-Length").split(',');
    answer.bodyBytes = hasLength ? toLength(lengths.constFirst().trimmed()) : -1;
    if (hasLength
        && (answer.bodyBytes < 0
            || std::any_of(lengths.cbegin(), lengths.cend(), [&lengths](const QByteArray &length) {
                   return length.trimmed() != lengths.constFirst().trimmed();
               })))
        answer.failure = lastingFailure(QStringLiteral("the server announced an impossible size"));
    answer.acceptsRanges = reply.rawHeader("Accept-Ranges").toLower().contains("bytes");
    if (answer.status == partialContent) {
        answer.acceptsRanges = true;
        if (!parseContentRange(reply.rawHeader("Content-Range").trimmed(), answer))
            answer.failure = passingFailure(QStringLiteral("the server sent an unknown part"));
    } else if (answer.contentEncoding.isEmpty()) {
        answer.totalBytes = answer.bodyBytes;
    }
    return answer;
}

KovFailure checkFirstAnswer(const KovAnswer &answer, const KovDownloadRequest &request)
{
    if (answer.failure)
        return answer.failure;
    if (answer.status == partialContent)
        return lastingFailure(QStringLiteral("the server sent a part that nobody asked for"));
    if (request.announcedBytes >= 0 && answer.totalBytes >= 0
        && answer.totalBytes != request.announcedBytes)
        return lastingFailure(
            QStringLiteral("the server sent another file: %1 bytes, not %2")
                .arg(QString::number(answer.totalBytes), QString::number(request.announcedBytes)));
    // A web page instead of the file is usually a login form, unless the response has a file name.
    const QString announced = KovFileName::sanitized(request.suggestedName);
    const QString name = announced.isEmpty() ? KovFileName::fromUrl(request.url) : announced;
    if (isHtml(answer.contentType) && answer.fileName.isEmpty() && promisesFile(name))
        return lastingFailure(QStringLiteral("the server sent a web page instead of the file"));
    return {};
}

KovFailure checkRangeAnswer(const KovAnswer &answer, qint64 from, const KovJob &job)
{
    if (answer.failure)
        return answer.failure;
    if (answer.status != partialContent || answer.from != from
        || answer.totalBytes != job.totalBytes || !answer.contentEncoding.isEmpty()
        || (!answer.validators.etag.isEmpty() && answer.validators.etag != job.validators.etag))
        return passingFailure(QStringLiteral("the server sent another part than was asked for"));
    return {};
}

KovFailure replyFailure(const QNetworkReply &reply)
{
    switch (reply.error()) {
    case QNetworkReply::NoError:
        return {};
    case QNetworkReply::SslHandshakeFailedError:
    case QNetworkReply::ProtocolUnknownError:
    case QNetworkReply::ProtocolInvalidOperationError:
    case QNetworkReply::ProxyAuthenticationRequiredError:
    case QNetworkReply::AuthenticationRequiredError:
        return lastingFailure(reply.errorString());
    case QNetworkReply::OperationCanceledError:
        return passingFailure(QStringLiteral("the server is silent"));
    default:
        return passingFailure(reply.errorString());
    }
}
