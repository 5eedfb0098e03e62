#include "kovhttpresponse.h"

#include "httpheaderblock.h"
#include "kovfilename.h"
#include "kovunits.h"

#include <QFileInfo>
#include <QLocale>
#include <QNetworkReply>

#include <algorithm>
#include <limits>
#include <optional>

namespace {

namespace Status = KovHttpStatus;

/// The longest delay that a server can request (Retry-After).
constexpr qint64 maxRetryAfterMs = qint64{3600} * millisecondsPerSecond;

/// -1 for an unknown number, and for one that is too large for the size of a file.
qint64 toLength(std::optional<quint64> number)
{
    constexpr quint64 max = std::numeric_limits<qint64>::max();
    return number && *number <= max ? static_cast<qint64>(*number) : -1;
}

HttpHeaderBlock headersOf(const QNetworkReply &reply)
{
    HttpHeaderBlock headers;
    for (const auto &[name, value] : reply.rawHeaderPairs())
        headers.add({name.constData(), static_cast<size_t>(name.size())},
                    {value.constData(), static_cast<size_t>(value.size())});
    return headers;
}

qint64 retryAfter(const QNetworkReply &reply)
{
    const QByteArray value = reply.rawHeader("Retry-After").trimmed();
    bool isNumber = false;
    if (const qint64 seconds = value.toLongLong(&isNumber); isNumber && seconds >= 0)
        return std::min(seconds, maxRetryAfterMs / millisecondsPerSecond) * millisecondsPerSecond;
    // Relative to the Date header, since the local clock may be wrong.
    const QDateTime now = toHttpDate(reply.rawHeader("Date").trimmed());
    const QDateTime then = toHttpDate(value);
    return now.isValid() && then.isValid()
        ? std::clamp<qint64>(now.msecsTo(then), 0, maxRetryAfterMs)
        : -1;
}

bool isTransient(int status)
{
    return status == Status::requestTimeout || status == Status::tooEarly
        || status == Status::tooManyRequests
        || (status >= Status::firstServerError && status <= Status::lastServerError
            && status != Status::notImplemented && status != Status::httpVersionNotSupported);
}

KovFailure statusFailure(const QNetworkReply &reply, int status)
{
    const QString reason =
        reply.attribute(QNetworkRequest::HttpReasonPhraseAttribute).toString().trimmed();
    const QString text = printable(
        QStringLiteral("the server answered %1 %2").arg(QString::number(status), reason).trimmed());
    return isTransient(status) ? KovFailure{KovFailure::Kind::Transient, text, retryAfter(reply)}
                               : permanentFailure(text);
}

/// Whether the response says which part of the file it is.
bool takeContentRange(const std::optional<HttpContentRange> &range, KovHttpResponse &response)
{
    if (!range || !range->first || !range->last)
        return false;
    const qint64 size = toLength(*range->last - *range->first + 1);
    response.from = toLength(range->first);
    response.totalBytes = toLength(range->total);
    if (response.from < 0 || size <= 0 || (response.bodyBytes >= 0 && response.bodyBytes != size))
        return false;
    response.bodyBytes = size;
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
bool isCompressedFile(const KovHttpResponse &response)
{
    static const QByteArrayList types{"application/gzip", "application/x-gzip",
                                      "application/x-gunzip", "application/x-compressed"};
    static const QStringList endings{u"gz"_qs, u"tgz"_qs, u"svgz"_qs};
    const QString name =
        response.fileName.isEmpty() ? KovFileName::fromUrl(response.url) : response.fileName;
    return types.contains(response.contentType)
        || endings.contains(QFileInfo(name).suffix().toLower());
}

} // namespace

KovFailure transientFailure(const QString &text)
{
    return {KovFailure::Kind::Transient, printable(text)};
}

KovFailure permanentFailure(const QString &text)
{
    return {KovFailure::Kind::Permanent, printable(text)};
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

bool KovHttpResponse::isDataUrl(const QUrl &url) { return url.scheme() == u"data"; }

KovHttpResponse KovHttpResponse::of(const QNetworkReply &reply)
{
    KovHttpResponse response;
    const HttpHeaderBlock headers = headersOf(reply);
    const bool isHere = isDataUrl(reply.url()) && reply.error() == QNetworkReply::NoError;
    response.status =
        isHere ? Status::ok : reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    response.url = reply.url();
    response.validators = {reply.rawHeader("ETag").trimmed(),
                           reply.rawHeader("Last-Modified").trimmed()};
    if (const auto type = headers.mediaType())
        response.contentType = QByteArray::fromStdString(type->name);
    response.contentEncoding = reply.rawHeader("Content-Encoding").trimmed().toLower();
    response.fileName = KovFileName::sanitized(headers.fileName());
    if (response.contentEncoding == "identity" || isCompressedFile(response))
        response.contentEncoding.clear();

    if (response.status < Status::ok || response.status > Status::lastSuccess) {
        response.failure = statusFailure(reply, response.status);
        return response;
    }
    if (response.status == Status::noContent || response.status == Status::resetContent) {
        response.failure = permanentFailure(QStringLiteral("the server sent no file"));
        return response;
    }
    // Chunks decide, whatever the length says (RFC 9112, 6.3).
    const bool hasLength = headers.contains("content-length")
        && !reply.rawHeader("Transfer-Encoding").toLower().contains("chunked");
    response.bodyBytes = hasLength ? toLength(headers.contentLength()) : -1;
    if (hasLength && response.bodyBytes < 0)
        response.failure =
            permanentFailure(QStringLiteral("the server announced an impossible size"));
    response.acceptsRanges = reply.rawHeader("Accept-Ranges").toLower().contains("bytes");
    if (response.status == Status::partialContent) {
        response.acceptsRanges = true;
        if (!takeContentRange(headers.contentRange(), response))
            response.failure = transientFailure(QStringLiteral("the server sent an unknown part"));
    } else if (response.contentEncoding.isEmpty()) {
        response.totalBytes = response.bodyBytes;
    }
    return response;
}

KovFailure checkFirstResponse(const KovHttpResponse &response, const KovDownloadRequest &request)
{
    if (response.failure)
        return response.failure;
    if (response.status == Status::partialContent)
        return permanentFailure(QStringLiteral("the server sent a part that nobody asked for"));
    if (request.announcedBytes >= 0 && response.totalBytes >= 0
        && response.totalBytes != request.announcedBytes)
        return permanentFailure(QStringLiteral("the server sent another file: %1 bytes, not %2")
                                    .arg(QString::number(response.totalBytes),
                                         QString::number(request.announcedBytes)));
    // A web page instead of the file is usually a login form, unless the response has a file name.
    const QString announced = KovFileName::sanitized(request.suggestedName);
    const QString name = announced.isEmpty() ? KovFileName::fromUrl(request.url) : announced;
    if (isHtml(response.contentType) && response.fileName.isEmpty() && promisesFile(name))
        return permanentFailure(QStringLiteral("the server sent a web page instead of the file"));
    return {};
}

KovFailure checkRangeResponse(const KovHttpResponse &response, qint64 from, const KovJob &job)
{
    if (response.failure)
        return response.failure;
    if (response.status != Status::partialContent || response.from != from
        || response.totalBytes != job.totalBytes || !response.contentEncoding.isEmpty()
        || (!response.validators.etag.isEmpty() && response.validators.etag != job.validators.etag))
        return transientFailure(QStringLiteral("the server sent another part than was asked for"));
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
        return permanentFailure(reply.errorString());
    case QNetworkReply::OperationCanceledError:
        return transientFailure(QStringLiteral("the server is silent"));
    default:
        return transientFailure(reply.errorString());
    }
}
