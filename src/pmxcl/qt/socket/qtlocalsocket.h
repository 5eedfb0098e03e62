#pragma once

#include "qtabstractsocket.h"

#include <QLocalSocket>
#include <QSharedPointer>

#include <optional>
#include <sys/types.h>
#include <utility>

/**
 * A QtAbstractSocket over a local-domain socket.
 *
 * It connects on its own, or takes a socket that a QLocalServer accepted and is then connected from
 * the start. States that have no counterpart in QtAbstractSocket::SocketState are -1.
 *
 * Errors are of the category "QtLocalSocketError", see the table in the source.
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

    /// For an address that is not a local server name this does nothing. Called by whoever is just
    /// being told that a connection has ended, it connects from the event loop.
    void connectToServer(const QtAbstractServerAddress &address,
                         QIODeviceBase::OpenMode mode) override;
    void disconnectFromHost() override;
    void abort() override;
    /// Null once the local socket is gone; nothing has an effect then.
    QIODevice *ioDevice() const override;
    bool isConnected() const override;
    SocketState state() const override;
    AbstractError error() const override;

private Q_SLOTS:
    void onSocketDestroyed();
    void onSocketConnected();
    void onSocketDisconnected();
    void onError(QLocalSocket::LocalSocketError error);
    void onSocketStateChanged(QLocalSocket::LocalSocketState state);

private:
    static SocketState convert(int localSocketState);
    void connectPostponed();
    void refuse(std::optional<uid_t> user);
    void closeRefused();
    template <typename Tell> void tellWhileClosing(Tell tell);

    QSharedPointer<QLocalSocket> m_socket;
    bool m_connected = false;
    std::optional<uid_t> m_requiredServerUser;
    /// Why the server was refused, until the next attempt to connect.
    std::optional<AbstractError> m_refusal;
    QString m_loggedRefusal;
    /// Found to be of another user and not closed yet; the local socket is silent meanwhile.
    bool m_refusing = false;
    /// Telling that a connection has ended. The local socket empties its buffers only afterwards,
    /// so that what a new connection were given to write now would be lost.
    bool m_closing = false;
    /// What is to be connected to after that.
    std::optional<std::pair<QString, QIODeviceBase::OpenMode>> m_postponed;
};
