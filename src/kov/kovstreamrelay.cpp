#include "kovstreamrelay.h"

#include "kovplaylist.h"
#include "playlisttext.h"
#include "qtappdefaultlogger.h"

#include <QFile>
#include <QRandomGenerator>
#include <QTcpSocket>

#include <array>
#include <unistd.h>
#include <utility>

namespace {

/// A secret in the address, to keep out web pages in this user's browser.
QByteArray secret()
{
    std::array<quint32, 4> numbers = {};
    QRandomGenerator::system()->fillRange(numbers.data(), numbers.size());
    return QByteArray::fromRawData(reinterpret_cast<const char *>(numbers.data()), sizeof(numbers))
        .toHex();
}

QByteArray inHex(quint16 port)
{
    return QByteArray::number(port, 16).toUpper().rightJustified(4, '0');
}

/// Whether the peer of a loopback connection is a process of this user, by the kernel's table of
/// connections (proc(5), /proc/net/tcp).
bool isOwn(const QTcpSocket &socket)
{
    QFile table(QStringLiteral("/proc/net/tcp"));
    if (!table.open(QIODevice::ReadOnly))
        return false;
    const QByteArray loopback = QByteArrayLiteral(" 0100007F:");
    const QByteArray ends =
        loopback + inHex(socket.peerPort()) + loopback + inHex(socket.localPort()) + ' ';
    const QByteArray connections = table.readAll();
    const qsizetype found = connections.indexOf(ends);
    // What follows: state, queues, timer, retransmissions, user.
    return found >= 0
        && connections.mid(found + ends.size(), 80).simplified().split(' ').value(4).toUInt()
        == ::getuid();
}

} // namespace

KovStreamRelay::KovStreamRelay(KovStreamOrigin origin, QtClock &clock, QObject *parent)
    : QObject(parent), m_origin(std::move(origin)), m_clock(clock)
{
    connect(&m_server, &QTcpServer::newConnection, this, &KovStreamRelay::onNewConnection);
    m_server.listen(QHostAddress::LocalHost);
    m_address =
        "http://127.0.0.1:" + QByteArray::number(m_server.serverPort()) + '/' + secret() + '/';
}

QByteArray KovStreamRelay::addressOf(const QUrl &url) const
{
    return KovPlaylist::relocatedReference(
        url.toEncoded(QUrl::RemoveUserInfo | QUrl::RemoveFragment), url, m_address);
}

void KovStreamRelay::onNewConnection()
{
    while (QTcpSocket *const socket = m_server.nextPendingConnection()) {
        if (!isOwn(*socket)) {
            logLine(1, QStringLiteral("[KovStreamRelay]: WARNING: refused a connection"));
            socket->abort();
            socket->deleteLater();
            continue;
        }
        auto *const visit = new KovStreamRelayRequest(socket, m_origin, m_address, m_clock, this);
        connect(visit, &KovStreamRelayRequest::received, this,
                [this](qint64 bytes) { m_receivedBytes += bytes; });
        connect(visit, &KovStreamRelayRequest::failed, this, &KovStreamRelay::onFailed);
    }
}

void KovStreamRelay::onFailed(const QUrl &url, const KovFailure &failure)
{
    m_failed.insert(url);
    if (m_tolerated.contains(url) && PlaylistText::isFileName(url.path()))
        return;
    m_failure = failure;
    Q_EMIT failed();
}
