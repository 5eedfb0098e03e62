#pragma once

#include "qtabstractsocket.h"

#include <QDeadlineTimer>
#include <QLocalSocket>
#include <QSharedPointer>
#include <QTimer>

#include <optional>
#include <sys/types.h>

/**
 * A QtAbstractSocket over a local-domain socket.
 *
 * It connects to a server, or wraps a socket that a QLocalServer accepted, which is connected from
 * the start. States that have no counterpart in QtAbstractSocket::SocketState are -1.
 *
 * Errors are of the category "QtLocalSocketError", see the table in the source. Any reason other
 * than a missing listener is logged, once for a series of attempts that fail for the same reason.
 */
class QtLocalSocket : public QtAbstractSocket {
    Q_OBJECT
public:
    /// Without a socket it creates one. For a socket that has a parent, such as one accepted by a
    /// QLocalServer, use QObject::deleteLater() as the deleter.
    explicit QtLocalSocket(QSharedPointer<QLocalSocket> socket = {}, QObject *parent = nullptr);

    ~QtLocalSocket() override;

    /**
     * From now on connects only to servers that run as this user. Any user can create a socket of
     * the expected name in a shared folder. Another user's server, or one whose user is unknown, is
     * never reported as connected: it is logged, and the attempt fails with accessErrorCode before
     * anything is read or written.
     */
    void setRequiredServerUser(uid_t user);

    /// SocketAccessError.
    static constexpr int accessErrorCode = 4;

    /// How long to retry a server whose queue of connections is full, in milliseconds. After that,
    /// the attempt fails with SocketTimeoutError (code 6).
    static constexpr int fullQueueTimeoutMs = 1000;

    /// Does nothing for an address that is not a local server name. When called from a slot for the
    /// end of a connection, it connects from the event loop.
    void connectToServer(const QtAbstractServerAddress &address,
                         QIODeviceBase::OpenMode mode) override;
    /// The path of the socket to which it connected last, or tried to.
    QString serverPath() const;
    void disconnectFromHost() override;
    void abort() override;
    /// Null once the local socket was destroyed; then no function has an effect.
    QIODevice *ioDevice() const override;
    bool isConnected() const override;
    SocketState state() const override;
    AbstractError error() const override;
    void closeSending() override;
    bool hasPeerTakenAll() const override;
    qint64 writeAtOnce(QByteArrayView bytes) override;

private Q_SLOTS:
    void onSocketDestroyed();
    void onSocketConnected();
    void onSocketDisconnected();
    void onError(QLocalSocket::LocalSocketError error);
    void onSocketStateChanged(QLocalSocket::LocalSocketState state);

private:
    /// The state, as far as QLocalSocket's own state does not cover it.
    enum class Phase {
        /// Only the local socket's state counts.
        Idle,
        /// The server's queue is full: the local socket is idle between two attempts.
        FullQueue,
        /// The server belongs to another user, and the connection is not closed yet; meanwhile the
        /// local socket's signals are ignored.
        Refusing,
        Connected,
        /// Emitting the signals for the end of a connection or an attempt. The local socket clears
        /// its buffers only afterwards: data written to a new connection now would be lost.
        Ending,
        /// The same, while connectedStateChanged(false) is still to come.
        EndingConnected,
    };
    struct Attempt {
        QString serverName;
        QIODeviceBase::OpenMode mode;
    };

    static SocketState convert(int localSocketState);
    bool isEnding() const { return m_phase == Phase::Ending || m_phase == Phase::EndingConnected; }
    void attempt(const Attempt &attempt);
    void attemptAgain();
    void connectPostponed();
    void refuse(std::optional<uid_t> user);
    void closeRefused();
    void endAttempt(const std::optional<AbstractError> &error);
    void logObstacle(const QString &text);
    template <typename Tell> void tellWhileEnding(Phase phase, Tell tell);

    QSharedPointer<QLocalSocket> m_socket;
    Phase m_phase = Phase::Idle;
    std::optional<uid_t> m_requiredServerUser;
    /// The last attempt to connect, and the deadline for retrying a full queue.
    Attempt m_attempt;
    QDeadlineTimer m_attemptDeadline;
    QTimer m_attemptTimer;
    /// Where to connect once the signals for the end were emitted.
    std::optional<Attempt> m_postponed;
    /// The error of the last attempt, if it is not the local socket's.
    std::optional<AbstractError> m_ownError;
    QString m_loggedObstacle;
};
