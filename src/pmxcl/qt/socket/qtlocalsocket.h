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
 * It connects on its own, or takes a socket that a QLocalServer accepted and is then connected from
 * the start. States that have no counterpart in QtAbstractSocket::SocketState are -1.
 *
 * Errors are of the category "QtLocalSocketError", see the table in the source. Any reason other
 * than a missing listener is logged, once for a series of attempts that fail for the same reason.
 */
class QtLocalSocket : public QtAbstractSocket {
    Q_OBJECT
public:
    /// Without a socket it makes one of its own. A socket that has a parent, as one accepted by a
    /// QLocalServer does, is shared with QObject::deleteLater() for its deleter.
    explicit QtLocalSocket(QSharedPointer<QLocalSocket> socket = {}, QObject *parent = nullptr);

    ~QtLocalSocket() override;

    /**
     * From now on connects only to servers that run as this user. Anybody can make a socket of an
     * expected name in a shared folder; a server of someone else, or one whose user cannot be told,
     * is never reported as connected: it is logged, and the attempt fails with SocketAccessError
     * (code 4) before anything is read or written.
     */
    void setRequiredServerUser(uid_t user);

    /// How long a server whose queue of connections is full is tried, in milliseconds. After that
    /// the attempt has failed, with SocketTimeoutError (code 6).
    static constexpr int fullQueueWithinMs = 1000;

    /// Does nothing for an address that is not a local server name. When called from a slot for the
    /// end of a connection, it connects from the event loop.
    void connectToServer(const QtAbstractServerAddress &address,
                         QIODeviceBase::OpenMode mode) override;
    void disconnectFromHost() override;
    void abort() override;
    /// Null once the local socket is gone; nothing has an effect then.
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
    /// What QLocalSocket's own state does not say.
    enum class Phase {
        /// Not connected: the local socket's state says all.
        Idle,
        /// The server's queue is full: the local socket is idle between two attempts.
        FullQueue,
        /// The server was found to be of another user and is not closed yet; the local socket is
        /// silent meanwhile.
        Refusing,
        Connected,
        /// Telling that a connection, or an attempt, has ended. The local socket empties its
        /// buffers only afterwards: what a new connection were given to write now would be lost.
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
    QString serverPath() const;
    template <typename Tell> void tellWhileEnding(Phase phase, Tell tell);

    QSharedPointer<QLocalSocket> m_socket;
    Phase m_phase = Phase::Idle;
    std::optional<uid_t> m_requiredServerUser;
    /// The last attempt to connect, and until when a full queue is waited for.
    Attempt m_attempt;
    QDeadlineTimer m_attemptDeadline;
    QTimer m_attemptTimer;
    /// To be connected to once the end has been told.
    std::optional<Attempt> m_postponed;
    /// Why the last attempt failed, where the local socket does not know.
    std::optional<AbstractError> m_ownError;
    QString m_loggedObstacle;
};
