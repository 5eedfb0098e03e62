#pragma once

#include "kovstreamrelayrequest.h"

#include <QByteArray>
#include <QSet>
#include <QTcpServer>

/**
 * A local HTTP proxy through which a program reads one stream: it rewrites the references in
 * playlists to itself, and forwards the requests.
 *
 * So no cookies appear on the program's command line, which other users can read; the rules for
 * cookies, referrers and redirects apply to each part of the stream; and every missing part is
 * noticed. Only this user's processes are answered.
 */
class KovStreamRelay : public QObject {
    Q_OBJECT
public:
    KovStreamRelay(KovStreamOrigin origin, QtClock &clock, QObject *parent = nullptr);

    /// Whether it listens; else see errorString().
    bool isListening() const { return m_server.isListening(); }
    QString errorString() const { return m_server.errorString(); }
    /// The base URL.
    const QByteArray &address() const { return m_address; }
    QByteArray addressOf(const QUrl &url) const;

    qint64 receivedBytes() const { return m_receivedBytes; }
    qsizetype connections() const { return findChildren<KovStreamRelayRequest *>().size(); }
    /// From now on the playlists of other qualities that have failed do not matter.
    void tolerateFailures() { m_tolerated = m_failed; }
    /// Why a required part is missing.
    const KovFailure &failure() const { return m_failure; }

Q_SIGNALS:
    /// There is a failure().
    void failed();

private:
    void onNewConnection();
    void onFailed(const QUrl &url, const KovFailure &failure);

    const KovStreamOrigin m_origin;
    QtClock &m_clock;
    QTcpServer m_server;
    QByteArray m_address;
    qint64 m_receivedBytes = 0;
    QSet<QUrl> m_failed;
    QSet<QUrl> m_tolerated;
    KovFailure m_failure;
};
