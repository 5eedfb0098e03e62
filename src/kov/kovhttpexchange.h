#pragma once

#include "kovhttpresponse.h"
#include "kovjob.h"

#include <QNetworkCookieJar>
#include <QNetworkRequest>
#include <QObject>
#include <QSharedPointer>

#include <memory>

class KovNetworkPool;
class QNetworkAccessManager;
class QNetworkReply;

/**
 * One request for a file, or for a range of one, over http or https.
 *
 * Redirects are followed, except from https to http. Each exchange has its own cookie jar, which
 * also keeps the cookies that are set on the way. When a redirect leaves the referrer's site, only
 * the referrer's origin is sent.
 */
class KovHttpExchange : public QObject {
    Q_OBJECT
public:
    /// Whether the scheme is supported: http, https, and "data:".
    static bool isSupported(const QUrl &url);

    /// Exchanges for the same file may share a cookie jar; without one, each has its own.
    KovHttpExchange(KovDownloadRequest request, QSharedPointer<KovNetworkPool> pool,
                    const QSharedPointer<QNetworkCookieJar> &cookies = {},
                    QObject *parent = nullptr);
    ~KovHttpExchange() override;

    /// Requests the whole file.
    void start();
    /// Requests the bytes from "from" up to but not including "to", or to the end if that is -1,
    /// provided that the file still matches the value of an If-Range field.
    void start(qint64 from, qint64 to, const QByteArray &ifRange);
    /// Requests a part of the file at another URL: all of it, or a range as above. The cookies and
    /// the referrer are sent as far as the rules for the file's site allow.
    void startAt(const QUrl &url);
    void startAt(const QUrl &url, qint64 from, qint64 to, const QByteArray &ifRange);
    /// Emits no more signals.
    void abort();

    const QSharedPointer<QNetworkCookieJar> &cookies() const { return m_cookies; }

    /// After headersReceived().
    const KovHttpResponse &response() const { return m_response; }
    /// The request for the next attempt. Once a redirect has turned a POST into a GET, this is a
    /// GET of the last URL, with the cookies that were set on the way.
    KovDownloadRequest request() const;
    /// Reads at most so many bytes of the body. -1 at its end.
    qint64 read(char *bytes, qint64 size);
    QByteArray readAll();
    QByteArray peek(qint64 size) const;
    qint64 bytesAvailable() const;
    /// No more of the body will arrive; failure() says whether it is complete.
    bool isFinished() const { return m_finished; }
    /// Why it is not complete; none while it is not finished.
    const KovFailure &failure() const { return m_failure; }

Q_SIGNALS:
    /// The headers of the final response have arrived, also of an error. Not emitted without one.
    void headersReceived();
    void readyRead();
    /// No more data will arrive; unread data is still there.
    void finished();

private:
    void sendRequest(const QUrl &url);
    void keepCookies();
    QNetworkRequest networkRequest(const QUrl &url) const;
    QByteArray cookieHeader(const QUrl &url) const;
    /// Empty when there is none.
    QByteArray referrerHeader(const QUrl &url) const;
    /// The target of a redirect; empty for other answers.
    QUrl redirectTarget() const;
    void followRedirect(const QUrl &target);
    void onMetaDataChanged();
    void onReplyFinished();
    void finish(const KovFailure &failure);

    KovDownloadRequest m_request;
    const QSharedPointer<KovNetworkPool> m_pool;
    const QSharedPointer<QNetworkAccessManager> m_network;
    const QSharedPointer<QNetworkCookieJar> m_cookies;
    std::unique_ptr<QNetworkReply, void (*)(QNetworkReply *)> m_reply;
    QByteArray m_range;
    QByteArray m_ifRange;
    KovHttpResponse m_response;
    KovFailure m_failure;
    int m_redirects = 0;
    bool m_answered = false;
    bool m_finished = false;
};
