#pragma once

#include "kovstreamvisit.h"

#include <QByteArray>
#include <QSet>
#include <QTcpServer>

/**
 * A web server on this machine through which a program reads one stream: it gives addresses of
 * playlists and of what these refer to, and gets from the web what is asked for there.
 *
 * So the program need not be told any cookies (its command line is for everybody on the machine to
 * see), the rules for cookies, referrers and redirects hold for each part of the stream, and no
 * part can be missing without a word. Nobody but this user is answered.
 */
class KovStreamRelay : public QObject {
    Q_OBJECT
public:
    KovStreamRelay(KovStreamOrigin origin, QtClock &clock, QObject *parent = nullptr);

    /// Whether it can be used; else see errorString().
    bool isListening() const { return m_server.isListening(); }
    QString errorString() const { return m_server.errorString(); }
    /// Where all addresses begin.
    const QByteArray &address() const { return m_address; }
    QByteArray addressOf(const QUrl &url) const;

    qint64 receivedBytes() const { return m_receivedBytes; }
    qsizetype connections() const { return findChildren<KovStreamVisit *>().size(); }
    /// Playlists that have failed until now, of other qualities, can be done without.
    void tolerateFailures() { m_tolerated = m_failed; }
    /// Why something is missing that cannot be done without.
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
