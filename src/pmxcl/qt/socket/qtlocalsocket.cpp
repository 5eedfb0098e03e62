#include "qtlocalsocket.h"

#include "localpeeruser.h"
#include "qtappdefaultlogger.h"
#include "systemerrortext.h"

#include <QAbstractSocket>
#include <QDir>
#include <QFile>
#include <QMetaEnum>
#include <QMetaObject>
#include <QPointer>
#include <QSignalBlocker>

#include <linux/sockios.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

#include <algorithm>
#include <cerrno>
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
        return QtLocalSocket::accessErrorCode;
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

/// Qt's folder for sockets whose name is not a path.
QString pathOfServer(const QString &name)
{
    return name.startsWith(u'/') ? name : QDir::cleanPath(QDir::tempPath()) + u'/' + name;
}

/// Why no connection is possible, for the log; empty if there is just no listener.
QString obstacleAt(const QString &path, std::optional<uid_t> requiredUser,
                   QLocalSocket::LocalSocketError error)
{
    const QByteArray name = QFile::encodeName(path);
    if (static_cast<size_t>(name.size()) >= sizeof(sockaddr_un::sun_path))
        return QStringLiteral("the path is longer than that of a socket may be");
    struct stat file = {};
    if (::stat(name.constData(), &file) != 0)
        return errno == ENOENT ? QString() : systemErrorText(errno);
    if (S_ISDIR(file.st_mode))
        return QStringLiteral("a folder is in its place");
    if (!S_ISSOCK(file.st_mode))
        return QStringLiteral("another file is in its place");
    if (requiredUser && file.st_uid != *requiredUser)
        return QStringLiteral("it belongs to user %1").arg(file.st_uid);
    // Left behind by a server that could not clean up.
    if (error == QLocalSocket::ConnectionRefusedError)
        return {};
    // The error's name, as its text is in the user's language.
    return QLatin1String(QMetaEnum::fromType<QAbstractSocket::SocketError>().valueToKey(error));
}

/// Between two attempts while the server's queue is full, in milliseconds.
constexpr int fullQueuePauseMs = 50;

} // namespace

QtLocalSocket::QtLocalSocket(QSharedPointer<QLocalSocket> socket, QObject *parent)
    : QtAbstractSocket(parent), m_socket(std::move(socket))
{
    if (!m_socket)
        m_socket = QSharedPointer<QLocalSocket>(new QLocalSocket, &QObject::deleteLater);
    if (m_socket->state() == QLocalSocket::ConnectedState)
        m_phase = Phase::Connected;

    QLocalSocket *const local = m_socket.data();
    connect(local, &QObject::destroyed, this, &QtLocalSocket::onSocketDestroyed);
    connect(local, &QLocalSocket::connected, this, &QtLocalSocket::onSocketConnected);
    connect(local, &QLocalSocket::disconnected, this, &QtLocalSocket::onSocketDisconnected);
    connect(local, &QLocalSocket::errorOccurred, this, &QtLocalSocket::onError);
    connect(local, &QLocalSocket::stateChanged, this, &QtLocalSocket::onSocketStateChanged);

    m_attemptTimer.setSingleShot(true);
    connect(&m_attemptTimer, &QTimer::timeout, this, &QtLocalSocket::attemptAgain);
}

QtLocalSocket::~QtLocalSocket()
{
    // No more signals: the local socket is being closed.
    if (m_socket)
        m_socket->disconnect(this);
}

void QtLocalSocket::setRequiredServerUser(uid_t user) { m_requiredServerUser = user; }

void QtLocalSocket::connectToServer(const QtAbstractServerAddress &address,
                                    QIODeviceBase::OpenMode mode)
{
    if (!m_socket || m_phase == Phase::Refusing || m_phase == Phase::FullQueue
        || address.kind() != QtAbstractServerAddress::LocalServerName)
        return;
    const Attempt wanted{address.localServerName(), mode};
    if (isEnding()) {
        m_postponed = wanted;
        QMetaObject::invokeMethod(this, &QtLocalSocket::connectPostponed, Qt::QueuedConnection);
        return;
    }
    m_attemptDeadline.setRemainingTime(fullQueueTimeoutMs);
    attempt(wanted);
}

void QtLocalSocket::connectPostponed()
{
    if (const auto postponed = std::exchange(m_postponed, std::nullopt))
        connectToServer(QtAbstractServerAddress(postponed->serverName), postponed->mode);
}

void QtLocalSocket::attempt(const Attempt &attempt)
{
    m_ownError.reset();
    m_attempt = attempt;
    const QPointer<QtLocalSocket> self(this);
    m_socket->connectToServer(attempt.serverName, attempt.mode);
    if (!self || !m_socket || m_socket->state() != QLocalSocket::ConnectingState)
        return;

    // connect(2) returned EAGAIN: the queue is full. QLocalSocket would retry without a pause,
    // forever, and can be stopped only in this way: abort() leaves it in its connecting state.
    {
        const QSignalBlocker silence(m_socket.data());
        m_socket->abort();
        m_socket->setSocketDescriptor(-1, QLocalSocket::UnconnectedState, QIODeviceBase::NotOpen);
        m_socket->close();
    }
    m_phase = Phase::FullQueue;
    m_attemptTimer.start(fullQueuePauseMs);
}

void QtLocalSocket::attemptAgain()
{
    if (m_phase != Phase::FullQueue)
        return;
    if (!m_attemptDeadline.hasExpired()) {
        attempt(m_attempt);
        return;
    }
    const QString text = QStringLiteral("its queue of connections is full");
    logObstacle(QStringLiteral("cannot connect to \"%1\": %2").arg(serverPath(), text));
    endAttempt(localSocketError(QLocalSocket::SocketTimeoutError, text, __LINE__));
}

void QtLocalSocket::endAttempt(const std::optional<AbstractError> &error)
{
    m_attemptTimer.stop();
    m_ownError = error;
    m_phase = Phase::Idle;
    const QPointer<QtLocalSocket> self(this);
    if (error)
        tellWhileEnding(Phase::Ending, [this, told = *error] { Q_EMIT errorOccurred(told); });
    if (self)
        tellWhileEnding(Phase::Ending, [this] { Q_EMIT stateChanged(UnconnectedState); });
}

void QtLocalSocket::disconnectFromHost()
{
    m_postponed.reset();
    if (m_phase == Phase::Refusing)
        closeRefused();
    else if (m_phase == Phase::FullQueue)
        endAttempt(std::nullopt);
    else if (m_socket)
        m_socket->disconnectFromServer();
}

void QtLocalSocket::abort()
{
    if (m_phase == Phase::Refusing || m_phase == Phase::FullQueue) {
        disconnectFromHost();
        return;
    }
    m_postponed.reset();
    if (m_socket)
        m_socket->abort();
}

QIODevice *QtLocalSocket::ioDevice() const { return m_socket.data(); }

bool QtLocalSocket::isConnected() const
{
    return m_phase == Phase::Connected || m_phase == Phase::EndingConnected;
}

QtAbstractSocket::SocketState QtLocalSocket::state() const
{
    if (!m_socket)
        return UnconnectedState;
    return m_phase == Phase::Refusing || m_phase == Phase::FullQueue ? ConnectingState
                                                                     : convert(m_socket->state());
}

AbstractError QtLocalSocket::error() const
{
    if (!m_socket)
        return {};
    if (m_ownError)
        return *m_ownError;
    return localSocketError(m_socket->error(), m_socket->errorString(), errorSourceLine);
}

void QtLocalSocket::closeSending()
{
    if (isConnected())
        ::shutdown(static_cast<int>(m_socket->socketDescriptor()), SHUT_WR);
}

bool QtLocalSocket::hasPeerTakenAll() const
{
    // unix(7): the bytes that the peer has not read.
    int unread = 0;
    if (isConnected())
        (void)::ioctl(static_cast<int>(m_socket->socketDescriptor()), SIOCOUTQ, &unread);
    return unread == 0;
}

qint64 QtLocalSocket::writeAtOnce(QByteArrayView bytes)
{
    if (m_phase != Phase::Connected || m_socket->state() != QLocalSocket::ConnectedState)
        return 0;
    const ssize_t written =
        ::send(static_cast<int>(m_socket->socketDescriptor()), bytes.constData(),
               static_cast<size_t>(bytes.size()), MSG_DONTWAIT | MSG_NOSIGNAL);
    return std::max<qint64>(written, 0);
}

void QtLocalSocket::onSocketDestroyed()
{
    m_socket.reset();
    if (!isConnected())
        m_phase = Phase::Idle;
}

void QtLocalSocket::onSocketConnected()
{
    if (m_requiredServerUser) {
        if (const auto user = localPeerUser(*m_socket); user != m_requiredServerUser) {
            refuse(user);
            return;
        }
        Q_EMIT stateChanged(ConnectedState);
    }
    m_phase = Phase::Connected;
    m_loggedObstacle.clear();
    logLine(2, QStringLiteral("[QtLocalSocket]: connected to \"%1\"").arg(serverPath()));
    Q_EMIT connectedStateChanged(true);
}

void QtLocalSocket::onSocketDisconnected()
{
    logLine(2, QStringLiteral("[QtLocalSocket]: disconnected"));
    m_phase = Phase::Idle;
    tellWhileEnding(Phase::Ending, [this] { Q_EMIT connectedStateChanged(false); });
}

void QtLocalSocket::onError(QLocalSocket::LocalSocketError error)
{
    const AbstractError told = localSocketError(error, m_socket->errorString(), __LINE__);
    if (!isConnected() && !m_attempt.serverName.isEmpty()) {
        const QString path = serverPath();
        if (const QString obstacle = obstacleAt(path, m_requiredServerUser, error);
            !obstacle.isEmpty())
            logObstacle(QStringLiteral("cannot connect to \"%1\": %2").arg(path, obstacle));
    }
    Q_EMIT errorOccurred(told);
}

void QtLocalSocket::onSocketStateChanged(QLocalSocket::LocalSocketState state)
{
    // A retry at a full queue is not reported as a new attempt.
    if (m_phase == Phase::FullQueue && state == QLocalSocket::ConnectingState) {
        m_phase = Phase::Idle;
        return;
    }
    // Before connected(), the descriptor, and thereby the server's user, is not available.
    const bool isForConnected = m_requiredServerUser && state == QLocalSocket::ConnectedState;
    if (isForConnected)
        return;
    const auto tell = [this, state] { Q_EMIT stateChanged(convert(state)); };
    if (state == QLocalSocket::UnconnectedState)
        tellWhileEnding(isConnected() ? Phase::EndingConnected : Phase::Ending, tell);
    else
        tell();
}

template <typename Tell> void QtLocalSocket::tellWhileEnding(Phase phase, Tell tell)
{
    const QPointer<QtLocalSocket> self(this);
    // Reentrancy: a slot may end the connection, which emits further signals.
    const Phase before = std::exchange(m_phase, phase);
    tell();
    if (self && m_phase == phase)
        m_phase = before;
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

void QtLocalSocket::logObstacle(const QString &text)
{
    // Clients retry, so this would be logged again and again.
    if (std::exchange(m_loggedObstacle, text) != text)
        logLine(1, QStringLiteral("[QtLocalSocket]: WARNING: ") + text);
}

QString QtLocalSocket::serverPath() const { return pathOfServer(m_attempt.serverName); }

void QtLocalSocket::refuse(std::optional<uid_t> user)
{
    const QString text = QStringLiteral("the server \"%1\" runs as user %2, not as user %3")
                             .arg(m_socket->fullServerName(),
                                  user ? QString::number(*user) : QStringLiteral("unknown"),
                                  QString::number(*m_requiredServerUser));
    logObstacle(QStringLiteral("refused to connect: ") + text);
    m_ownError = localSocketError(QLocalSocket::SocketAccessError, text, __LINE__);
    m_phase = Phase::Refusing;

    // Reentrancy: QLocalSocket is just emitting its signals for the connection, and would close the
    // descriptor twice if it were aborted now. Until then, its signals and data are ignored.
    m_socket->blockSignals(true);
    QMetaObject::invokeMethod(this, &QtLocalSocket::closeRefused, Qt::QueuedConnection);
}

void QtLocalSocket::closeRefused()
{
    if (m_phase != Phase::Refusing)
        return;
    m_socket->abort();
    m_socket->blockSignals(false);
    endAttempt(m_ownError);
}
