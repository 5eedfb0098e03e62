#include "kovhttpexchange.h"

#include "appidentity.h"
#include "appversion.h"
#include "kovnetworkpool.h"
#include "urlchecks.h"

#include <QNetworkReply>

#include <algorithm>
#include <utility>

namespace {

constexpr int maxRedirects = 20;
/// A server that is silent for longer is given up.
constexpr int silenceTimeoutMs = 30'000;
/// Limits how much unread data of a fast server is kept in memory.
constexpr qint64 readBufferBytes = 1 << 20;

// The redirects that keep the method and the body (RFC 9110, 15.4).
constexpr int temporaryRedirectStatus = 307;
constexpr int permanentRedirectStatus = 308;

constexpr int httpPort = 80;
constexpr int httpsPort = 443;

/// A line break in a header value would inject another header.
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

QSharedPointer<QNetworkCookieJar> ownCookies(const KovDownloadRequest &request)
{
    auto jar = QSharedPointer<QNetworkCookieJar>::create();
    for (QNetworkCookie cookie : request.cookies) {
        if (hasControls(cookie.name()) || hasControls(cookie.value()))
            continue;
        // The browser chose these cookies for this URL; their paths are unknown.
        if (cookie.path().isEmpty())
            cookie.setPath(QStringLiteral("/"));
        cookie.normalize(request.url);
        jar->insertCookie(cookie);
    }
    return jar;
}

bool isHttp(const QUrl &url) { return isValidHttpUrl(url) && !url.host().isEmpty(); }

} // namespace

bool KovHttpExchange::isSupported(const QUrl &url)
{
    return isHttp(url) || KovHttpResponse::isDataUrl(url);
}

KovHttpExchange::KovHttpExchange(KovDownloadRequest request, QSharedPointer<KovNetworkPool> pool,
                                 const QSharedPointer<QNetworkCookieJar> &cookies, QObject *parent)
    : QObject(parent), m_request(std::move(request)), m_pool(std::move(pool)),
      m_network(m_pool->take()), m_cookies(cookies ? cookies : ownCookies(m_request)),
      m_reply(nullptr, [](QNetworkReply *reply) {
          // Reentrancy: it may be emitting a signal.
          reply->abort();
          reply->deleteLater();
      })
{
}

KovHttpExchange::~KovHttpExchange()
{
    abort();
    m_pool->giveBack(m_network);
}

void KovHttpExchange::start() { sendRequest(m_request.url); }

void KovHttpExchange::start(qint64 from, qint64 to, const QByteArray &ifRange)
{
    startAt(m_request.url, from, to, ifRange);
}

void KovHttpExchange::startAt(const QUrl &url) { sendRequest(url); }

void KovHttpExchange::startAt(const QUrl &url, qint64 from, qint64 to, const QByteArray &ifRange)
{
    m_range = "bytes=" + QByteArray::number(from) + '-';
    if (to >= 0)
        m_range += QByteArray::number(to - 1);
    m_ifRange = ifRange;
    sendRequest(url);
}

void KovHttpExchange::abort()
{
    if (!m_reply)
        return;
    m_reply->disconnect(this);
    m_finished = true;
    m_reply.reset();
}

void KovHttpExchange::sendRequest(const QUrl &url)
{
    if (m_reply)
        m_reply->disconnect(this);
    m_reply.reset(m_request.postData.isEmpty()
                      ? m_network->get(networkRequest(url))
                      : m_network->post(networkRequest(url), m_request.postData));
    m_reply->setReadBufferSize(readBufferBytes);
    connect(m_reply.get(), &QNetworkReply::metaDataChanged, this,
            &KovHttpExchange::onMetaDataChanged);
    connect(m_reply.get(), &QNetworkReply::readyRead, this, [this] {
        if (m_answered)
            Q_EMIT readyRead();
    });
    connect(m_reply.get(), &QNetworkReply::finished, this, &KovHttpExchange::onReplyFinished);
}

KovDownloadRequest KovHttpExchange::request() const
{
    KovDownloadRequest request = m_request;
    request.cookies = m_cookies->cookiesForUrl(request.url);
    return request;
}

QNetworkRequest KovHttpExchange::networkRequest(const QUrl &url) const
{
    QNetworkRequest request(url);
    // Downloads share connections, but no cookies. Redirects are followed here: Qt would send the
    // cookies to other hosts, too.
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::ManualRedirectPolicy);
    for (const auto attribute :
         {QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::CookieSaveControlAttribute,
          QNetworkRequest::AuthenticationReuseAttribute})
        request.setAttribute(attribute, QNetworkRequest::Manual);
    request.setTransferTimeout(silenceTimeoutMs);
    request.setRawHeader("User-Agent",
                         headerValue(m_request.userAgent.isEmpty() ? appName() + u'/' + appVersion()
                                                                   : m_request.userAgent));
    request.setRawHeader("Accept", "*/*");
    // The file is wanted as it is stored, without content encoding.
    request.setRawHeader("Accept-Encoding", "identity");
    if (const QByteArray cookies = cookieHeader(url); !cookies.isEmpty())
        request.setRawHeader("Cookie", cookies);
    if (const QByteArray referrer = referrerHeader(url); !referrer.isEmpty())
        request.setRawHeader("Referer", referrer);
    if (!m_range.isEmpty())
        request.setRawHeader("Range", m_range);
    if (!m_ifRange.isEmpty())
        request.setRawHeader("If-Range", m_ifRange);
    if (!m_request.postData.isEmpty())
        request.setHeader(QNetworkRequest::ContentTypeHeader,
                          QStringLiteral("application/x-www-form-urlencoded"));
    return request;
}

QByteArray KovHttpExchange::cookieHeader(const QUrl &url) const
{
    QByteArrayList pairs;
    const QList<QNetworkCookie> cookies = m_cookies->cookiesForUrl(url);
    for (const QNetworkCookie &cookie : cookies)
        pairs += cookie.toRawForm(QNetworkCookie::NameAndValueOnly);
    return pairs.join("; ");
}

QByteArray KovHttpExchange::referrerHeader(const QUrl &url) const
{
    // The URL of the referring page may contain private data: cross-site, send the origin only.
    const QUrl page(m_request.referrer);
    if (isSameOrigin(page, m_request.url) && !isSameOrigin(page, url))
        return page.toEncoded(QUrl::RemoveUserInfo | QUrl::RemovePath | QUrl::RemoveQuery
                              | QUrl::RemoveFragment)
            + '/';
    return headerValue(m_request.referrer.section(u'#', 0, 0));
}

QUrl KovHttpExchange::redirectTarget() const
{
    const QUrl target = m_reply->attribute(QNetworkRequest::RedirectionTargetAttribute).toUrl();
    return target.isEmpty() ? target : m_reply->url().resolved(target);
}

void KovHttpExchange::keepCookies()
{
    m_cookies->setCookiesFromUrl(
        m_reply->header(QNetworkRequest::SetCookieHeader).value<QList<QNetworkCookie>>(),
        m_reply->url());
}

void KovHttpExchange::onMetaDataChanged()
{
    // Emitted again when an unexpected body follows.
    if (m_answered || !redirectTarget().isEmpty())
        return;
    m_answered = true;
    m_response = KovHttpResponse::of(*m_reply);
    keepCookies();
    Q_EMIT headersReceived();
}

void KovHttpExchange::onReplyFinished()
{
    if (m_answered) {
        finish(m_response.failure ? m_response.failure : replyFailure(*m_reply));
        return;
    }
    const QUrl target = redirectTarget();
    if (!target.isEmpty())
        followRedirect(target);
    else if (const KovFailure failure = replyFailure(*m_reply))
        finish(failure);
    else
        finish(transientFailure(QStringLiteral("the server did not answer")));
}

void KovHttpExchange::followRedirect(const QUrl &target)
{
    const bool isLessSafe = isValidHttpsUrl(m_reply->url()) && !isValidHttpsUrl(target);
    if (!isHttp(target) || isLessSafe) {
        finish(permanentFailure(QStringLiteral("redirected to where it cannot be followed")));
        return;
    }
    if (++m_redirects > maxRedirects) {
        finish(permanentFailure(QStringLiteral("redirected too often")));
        return;
    }
    keepCookies();
    const int status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (!m_request.postData.isEmpty() && status != temporaryRedirectStatus
        && status != permanentRedirectStatus) {
        m_request.postData.clear();
        m_request.referrer = QString::fromUtf8(referrerHeader(target));
        m_request.url = target;
    }
    sendRequest(target);
}

void KovHttpExchange::finish(const KovFailure &failure)
{
    m_finished = true;
    m_failure = failure;
    Q_EMIT finished();
}

qint64 KovHttpExchange::read(char *bytes, qint64 size)
{
    return m_reply ? m_reply->read(bytes, size) : -1;
}

QByteArray KovHttpExchange::readAll() { return m_reply ? m_reply->readAll() : QByteArray(); }

QByteArray KovHttpExchange::peek(qint64 size) const
{
    return m_reply ? m_reply->peek(size) : QByteArray();
}

qint64 KovHttpExchange::bytesAvailable() const { return m_reply ? m_reply->bytesAvailable() : 0; }
