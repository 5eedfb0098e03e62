#include "kovhttpdownload.h"

#include "appversion.h"
#include "httpcontentdisposition.h"
#include "kovdownloadfolder.h"
#include "kovfilename.h"
#include "urlchecks.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>

#include <algorithm>
#include <utility>

namespace {

constexpr int maxRedirects = 20;
/// A server that is silent for longer has gone.
constexpr int silenceTimeoutMs = 60'000;
/// Bounds what a fast server can pile up in memory.
constexpr qint64 readBufferBytes = 1 << 20;

constexpr int firstSuccessStatus = 200;
constexpr int lastSuccessStatus = 299;
// The redirects that keep the method and the body (RFC 9110, 15.4).
constexpr int temporaryRedirectStatus = 307;
constexpr int permanentRedirectStatus = 308;

constexpr int httpPort = 80;
constexpr int httpsPort = 443;

/// A line break in a header value would begin another header.
bool isControl(QChar c) { return c.category() == QChar::Other_Control; }

QByteArray headerValue(QString text)
{
    text.removeIf(isControl);
    return text.toUtf8();
}

bool hasControls(const QByteArray &text)
{
    return std::any_of(text.cbegin(), text.cend(),
                       [](char c) { return isControl(QLatin1Char(c)); });
}

bool isSameOrigin(const QUrl &a, const QUrl &b)
{
    const auto port = [](const QUrl &url) {
        return url.port(isValidHttpsUrl(url) ? httpsPort : httpPort);
    };
    return a.scheme() == b.scheme() && a.host() == b.host() && port(a) == port(b);
}

} // namespace

bool KovHttpDownload::isSupported(const QUrl &url)
{
    return (isValidHttpUrl(url) || isValidHttpsUrl(url)) && !url.host().isEmpty();
}

KovHttpDownload::KovHttpDownload(KovDownloadRequest request,
                                 std::shared_ptr<KovDownloadFolder> folder,
                                 QNetworkAccessManager &network, QObject *parent)
    : QObject(parent), m_request(std::move(request)), m_folder(std::move(folder)),
      m_network(&network)
{
    addCookies();
}

KovHttpDownload::~KovHttpDownload() { delete m_reply; }

void KovHttpDownload::start() { sendRequest(m_request.url); }

void KovHttpDownload::sendRequest(const QUrl &url)
{
    m_reply = m_request.postData.isEmpty()
        ? m_network->get(networkRequest(url))
        : m_network->post(networkRequest(url), m_request.postData);
    m_reply->setReadBufferSize(readBufferBytes);
    connect(m_reply, &QNetworkReply::readyRead, this, &KovHttpDownload::onReadyRead);
    connect(m_reply, &QNetworkReply::finished, this, &KovHttpDownload::onReplyFinished);
}

QString KovHttpDownload::path() const { return m_file ? m_file->path() : QString(); }

QNetworkRequest KovHttpDownload::networkRequest(const QUrl &url) const
{
    QNetworkRequest request(url);
    // What downloads share is the connections, nothing else. Followed automatically, a redirect
    // would take the cookies along to another host.
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::ManualRedirectPolicy);
    for (const auto attribute :
         {QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::CookieSaveControlAttribute,
          QNetworkRequest::AuthenticationReuseAttribute})
        request.setAttribute(attribute, QNetworkRequest::Manual);
    request.setTransferTimeout(silenceTimeoutMs);
    request.setRawHeader("User-Agent",
                         headerValue(m_request.userAgent.isEmpty()
                                         ? QStringLiteral("Kovalo/") + appVersion()
                                         : m_request.userAgent));
    request.setRawHeader("Accept", "*/*");
    // The file is wanted as the server has it, not what decompressing would make of it.
    request.setRawHeader("Accept-Encoding", "identity");
    if (const QByteArray cookies = cookieHeader(url); !cookies.isEmpty())
        request.setRawHeader("Cookie", cookies);
    if (const QByteArray referrer = referrerHeader(url); !referrer.isEmpty())
        request.setRawHeader("Referer", referrer);
    if (!m_request.postData.isEmpty())
        request.setHeader(QNetworkRequest::ContentTypeHeader,
                          QStringLiteral("application/x-www-form-urlencoded"));
    return request;
}

QByteArray KovHttpDownload::cookieHeader(const QUrl &url) const
{
    QByteArrayList pairs;
    const QList<QNetworkCookie> cookies = m_cookies.cookiesForUrl(url);
    for (const QNetworkCookie &cookie : cookies)
        pairs += cookie.toRawForm(QNetworkCookie::NameAndValueOnly);
    return pairs.join("; ");
}

QByteArray KovHttpDownload::referrerHeader(const QUrl &url) const
{
    // Which page of its own a site was asked from may hold what is no other site's business.
    const QUrl page(m_request.referrer);
    if (isSameOrigin(page, m_request.url) && !isSameOrigin(page, url))
        return page.toEncoded(QUrl::RemoveUserInfo | QUrl::RemovePath | QUrl::RemoveQuery
                              | QUrl::RemoveFragment)
            + '/';
    return headerValue(m_request.referrer.section(u'#', 0, 0));
}

void KovHttpDownload::addCookies()
{
    for (QNetworkCookie cookie : m_request.cookies) {
        if (hasControls(cookie.name()) || hasControls(cookie.value()))
            continue;
        // The browser chose them for this URL; of a page's folder it said nothing.
        if (cookie.path().isEmpty())
            cookie.setPath(QStringLiteral("/"));
        cookie.normalize(m_request.url);
        m_cookies.insertCookie(cookie);
    }
}

bool KovHttpDownload::isSuccess() const
{
    const int status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    return status >= firstSuccessStatus && status <= lastSuccessStatus;
}

void KovHttpDownload::onReadyRead()
{
    if (!isSuccess()) {
        m_reply->readAll(); // an error page
        return;
    }
    if (!save())
        m_reply->abort(); // which ends in onReplyFinished()
}

bool KovHttpDownload::save()
{
    if (!m_file) {
        const QVariant length = m_reply->header(QNetworkRequest::ContentLengthHeader);
        m_totalBytes = length.isValid() ? length.toLongLong() : -1;
        m_file = m_folder->createFile(fileName(), m_error);
        if (!m_file)
            return false;
    }
    const QByteArray bytes = m_reply->readAll();
    if (!m_file->write(bytes)) {
        m_error = m_file->errorString();
        return false;
    }
    m_receivedBytes += bytes.size();
    return true;
}

QString KovHttpDownload::fileName() const
{
    QString suggested = KovFileName::sanitized(m_request.suggestedName);
    if (!suggested.isEmpty())
        return suggested;
    QString sent = KovFileName::sanitized(
        fileNameFromContentDisposition(m_reply->rawHeader("Content-Disposition").toStdString()));
    return sent.isEmpty() ? KovFileName::fromUrl(m_reply->url()) : sent;
}

void KovHttpDownload::onReplyFinished()
{
    m_reply->deleteLater();
    const QUrl target = redirectTarget();
    if (!target.isEmpty() && followRedirect(target))
        return;
    const QString error = finish();
    if (!error.isEmpty())
        m_file.reset();
    Q_EMIT finished(error);
}

QUrl KovHttpDownload::redirectTarget() const
{
    const QUrl target = m_reply->attribute(QNetworkRequest::RedirectionTargetAttribute).toUrl();
    return target.isEmpty() ? target : m_reply->url().resolved(target);
}

bool KovHttpDownload::followRedirect(const QUrl &target)
{
    const bool isLessSafe = isValidHttpsUrl(m_reply->url()) && !isValidHttpsUrl(target);
    if (!isSupported(target) || isLessSafe) {
        m_error = QStringLiteral("redirected to where it cannot be followed");
        return false;
    }
    if (++m_redirects > maxRedirects) {
        m_error = QStringLiteral("redirected too often");
        return false;
    }
    m_cookies.setCookiesFromUrl(
        m_reply->header(QNetworkRequest::SetCookieHeader).value<QList<QNetworkCookie>>(),
        m_reply->url());
    const int status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (status != temporaryRedirectStatus && status != permanentRedirectStatus)
        m_request.postData.clear();
    sendRequest(target);
    return true;
}

QString KovHttpDownload::finish()
{
    if (!m_error.isEmpty())
        return m_error;
    if (m_reply->error() != QNetworkReply::NoError)
        return m_reply->errorString();
    if (!isSuccess())
        return QStringLiteral("the server sent no file");
    if (!save())
        return m_error;
    if (m_totalBytes >= 0 && m_receivedBytes != m_totalBytes)
        return QStringLiteral("the connection ended before the file did");
    m_totalBytes = m_receivedBytes;
    return m_file->commit() ? QString() : m_file->errorString();
}
