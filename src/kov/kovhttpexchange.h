#pragma once

#include "kovanswer.h"
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
 * Asks once for a file, or for a range of one, over http or https, and hands over what comes.
 *
 * Redirects are followed, except from https to http. Each exchange has its own cookies, which are
 * sent only where they belong, and what servers set on the way is kept for the rest of the way.
 * Of a referrer on the site that was asked first, another site is told no more than the origin.
 */
class KovHttpExchange : public QObject {
    Q_OBJECT
public:
    /// Whether it can be asked for: http and https, and what lies in the URL itself ("data:").
    static bool isSupported(const QUrl &url);

    /// Exchanges that belong together share their cookies: those of the request go into a jar of
    /// their own only.
    KovHttpExchange(KovDownloadRequest request, QSharedPointer<KovNetworkPool> pool,
                    const QSharedPointer<QNetworkCookieJar> &cookies = {},
                    QObject *parent = nullptr);
    ~KovHttpExchange() override;

    /// The whole file.
    void start();
    /// The bytes from "from" up to but not including "to", to the end when that is -1, if the file
    /// is still the one that the value of an If-Range field means.
    void start(qint64 from, qint64 to, const QByteArray &ifRange);
    /// What belongs to the file of the request and lies at another URL: all of it, or a range as
    /// above. It is given the cookies and the referrer that the file's own site lets it have.
    void startAt(const QUrl &url);
    void startAt(const QUrl &url, qint64 from, qint64 to, const QByteArray &ifRange);
    /// Nothing more is told.
    void abort();

    const QSharedPointer<QNetworkCookieJar> &cookies() const { return m_cookies; }

    /// After answered().
    const KovAnswer &answer() const { return m_answer; }
    /// How it would have to be asked for again: what redirects have made of the request. Once they
    /// have turned a POST into a GET, the URL is the last one, with the cookies set on the way.
    KovDownloadRequest request() const;
    /// What of the body is there; at most so many bytes. -1 at its end.
    qint64 read(char *bytes, qint64 size);
    QByteArray readAll();
    QByteArray peek(qint64 size) const;
    qint64 bytesAvailable() const;
    /// All of the body is there or will never be: see failure().
    bool isFinished() const { return m_finished; }
    /// Why it is not whole; none while it is not finished.
    const KovFailure &failure() const { return m_failure; }

Q_SIGNALS:
    /// The final answer has begun, a bad one, too. Not emitted when there is none.
    void answered();
    void readyRead();
    /// No more comes; what was not read is still there.
    void finished();

private:
    void sendRequest(const QUrl &url);
    void keepCookies();
    QNetworkRequest networkRequest(const QUrl &url) const;
    QByteArray cookieHeader(const QUrl &url) const;
    /// Empty when there is none.
    QByteArray referrerHeader(const QUrl &url) const;
    /// Where the answer sends us; empty when it is no redirect.
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
    KovAnswer m_answer;
    KovFailure m_failure;
    int m_redirects = 0;
    bool m_answered = false;
    bool m_finished = false;
};
