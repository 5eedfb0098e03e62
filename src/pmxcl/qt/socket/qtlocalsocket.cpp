#include "qtlocalsocket.h"

#include "qtappdefaultlogger.h"

#include <QMetaObject>
#include <QPointer>

#include <sys/socket.h>

#include <string>
#include <utility>

namespace {

constexpr int errorSourceLine = 178;

int errorCode(QLocalSocket::LocalSocketError error)
{
    switch (error) {
    case QLocalSocket::ConnectionRefusedError:
        return 1;
    case QLocalSocket::PeerClosedError:
        return 2;
    case QLocalSocket::ServerNotFoundError:
        return 3;
    case QLocalSocket::SocketAccessError:
        return 4;
    case QLocalSocket::SocketResourceError:
        return 5;
    case QLocalSocket::SocketTimeoutError:
        return 6;
    case QLocalSocket::DatagramTooLargeError:
        return 7;
    case QLocalSocket::ConnectionError:
        return 8;
    case QLocalSocket::UnsupportedSocketOperationError:
        return 9;
    case QLocalSocket::OperationError:
        return 10;
    default:
        return -1;
    }
}

AbstractError localSocketError(QLocalSocket::LocalSocketError error, const QString &text,
                               int sourceLine)
{
    return AbstractError(errorCode(error), "QtLocalSocketError",
                         "../../src/pmxcl/qt/socket/qtlocalsocket," + std::to_string(sourceLine),
                         text.toStdString());
}

/// The user as which the process at the other end ran when it began to listen (unix(7)).
std::optional<uid_t> peerUser(qintptr socketDescriptor)
{
    ucred credentials = {};
    socklen_t size = sizeof(credentials);
    if (::getsockopt(static_cast<int>(socketDescriptor), SOL_SOCKET, SO_PEERCRED, &credentials,
                     &size)
        != 0)
        return std::nullopt;
    return credentials.uid;
}

} // namespace

QtLocalSocket::QtLocalSocket(QSharedPointer<QLocalSocket> socket, QObject *parent)
    : QtAbstractSocket(parent), m_socket(std::move(socket))
{
    if (!m_socket)
        m_socket = QSharedPointer<QLocalSocket>(new QLocalSocket, &QObject::deleteLater);
    m_connected = m_socket->state() == QLocalSocket::ConnectedState;

    QLocalSocket *const local = m_socket.data();
    connect(local, &QObject::destroyed, this, &QtLocalSocket::onSocketDestroyed);
    connect(local, &QLocalSocket::connected, this, &QtLocalSocket::onSocketConnected);
    connect(local, &QLocalSocket::disconnected, this, &QtLocalSocket::onSocketDisconnected);
    connect(local, &QLocalSocket::errorOccurred, this, &QtLocalSocket::onError);
    connect(local, &QLocalSocket::stateChanged, this, &QtLocalSocket::onSocketStateChanged);
}

QtLocalSocket::~QtLocalSocket()
{
    // Nobody is to hear of the end of the local socket any more.
    if (m_socket)
        m_socket->disconnect(this);
}

void QtLocalSocket::setRequiredServerUser(uid_t user) { m_requiredServerUser = user; }

void QtLocalSocket::connectToServer(const QtAbstractServerAddress &address,
                                    QIODeviceBase::OpenMode mode)
{
    if (!m_socket || m_refusing || address.kind() != QtAbstractServerAddress::LocalServerName)
        return;
    if (m_closing) {
        m_postponed = {address.localServerName(), mode};
        QMetaObject::invokeMethod(this, &QtLocalSocket::connectPostponed, Qt::QueuedConnection);
        return;
    }
    m_refusal.reset();
    m_socket->connectToServer(address.localServerName(), mode);
}

void QtLocalSocket::connectPostponed()
{
    if (const auto postponed = std::exchange(m_postponed, std::nullopt))
        connectToServer(QtAbstractServerAddress(postponed->first), postponed->second);
}

void QtLocalSocket::disconnectFromHost()
{
    m_postponed.reset();
    if (m_refusing)
        closeRefused();
    else if (m_socket)
        m_socket->disconnectFromServer();
}

void QtLocalSocket::abort()
{
    m_postponed.reset();
    if (m_refusing)
        closeRefused();
    else if (m_socket)
        m_socket->abort();
}

QIODevice *QtLocalSocket::ioDevice() const { return m_socket.data(); }

bool QtLocalSocket::isConnected() const { return m_connected; }

QtAbstractSocket::SocketState QtLocalSocket::state() const
{
    if (!m_socket)
        return UnconnectedState;
    return m_refusing ? ConnectingState : convert(m_socket->state());
}

AbstractError QtLocalSocket::error() const
{
    if (!m_socket)
        return {};
    if (m_refusal)
        return *m_refusal;
    return localSocketError(m_socket->error(), m_socket->errorString(), errorSourceLine);
}

void QtLocalSocket::onSocketDestroyed()
{
    m_socket.reset();
    m_refusing = false;
}

void QtLocalSocket::onSocketConnected()
{
    if (m_requiredServerUser) {
        if (const auto user = peerUser(m_socket->socketDescriptor());
            user != m_requiredServerUser) {
            refuse(user);
            return;
        }
        Q_EMIT stateChanged(ConnectedState);
    }
    m_connected = true;
    m_loggedRefusal.clear();
    Q_EMIT connectedStateChanged(true);
}

void QtLocalSocket::onSocketDisconnected()
{
    m_connected = false;
    tellWhileClosing([this] { Q_EMIT connectedStateChanged(false); });
}

void QtLocalSocket::onError(QLocalSocket::LocalSocketError error)
{
    Q_EMIT errorOccurred(localSocketError(error, m_socket->errorString(), __LINE__));
}

void QtLocalSocket::onSocketStateChanged(QLocalSocket::LocalSocketState state)
{
    // Before connected() the descriptor, and by it the server's user, cannot be asked for yet.
    const bool isForConnected = m_requiredServerUser && state == QLocalSocket::ConnectedState;
    if (isForConnected)
        return;
    const auto tell = [this, state] { Q_EMIT stateChanged(convert(state)); };
    if (state == QLocalSocket::UnconnectedState)
        tellWhileClosing(tell);
    else
        tell();
}

template <typename Tell> void QtLocalSocket::tellWhileClosing(Tell tell)
{
    const QPointer<QtLocalSocket> self(this);
    // Whoever is told may end the connection himself, which is told in between.
    const bool wasClosing = std::exchange(m_closing, true);
    tell();
    if (self)
        m_closing = wasClosing;
}

QtAbstractSocket::SocketState QtLocalSocket::convert(int localSocketState)
{
    switch (localSocketState) {
    case QLocalSocket::UnconnectedState:
        return UnconnectedState;
    case QLocalSocket::ConnectingState:
        return ConnectingState;
    case QLocalSocket::ConnectedState:
        return ConnectedState;
    case QLocalSocket::ClosingState:
        return ClosingState;
    default:
        return static_cast<SocketState>(-1);
    }
}

void QtLocalSocket::refuse(std::optional<uid_t> user)
{
    const QString text = QStringLiteral("the server \"%1\" runs as user %2, not as user %3")
                             .arg(m_socket->fullServerName(),
                                  user ? QString::number(*user) : QStringLiteral("unknown"),
                                  QString::number(*m_requiredServerUser));
    // Once for all the attempts that end so: somebody will try again and again.
    if (std::exchange(m_loggedRefusal, text) != text)
        logLine(1, QStringLiteral("[QtLocalSocket]: WARNING: refused to connect: ") + text);
    m_refusal = localSocketError(QLocalSocket::SocketAccessError, text, __LINE__);
    m_refusing = true;

    // QLocalSocket is in the middle of telling that it is connected, and would close the descriptor
    // twice if it were aborted now. What it tells until then, and what it reads, is for nobody.
    m_socket->blockSignals(true);
    QMetaObject::invokeMethod(this, &QtLocalSocket::closeRefused, Qt::QueuedConnection);
}

void QtLocalSocket::closeRefused()
{
    if (!m_refusing)
        return;
    m_socket->abort();
    m_socket->blockSignals(false);
    m_refusing = false;
    const QPointer<QtLocalSocket> self(this);
    const AbstractError refusal = *m_refusal;
    tellWhileClosing([this, &refusal] { Q_EMIT errorOccurred(refusal); });
    if (self)
        Q_EMIT stateChanged(UnconnectedState);
}
