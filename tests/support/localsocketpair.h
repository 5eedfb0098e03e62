#pragma once

#include "qtlocalsocket.h"

#include <QLocalServer>
#include <QLocalSocket>
#include <QSharedPointer>
#include <QTemporaryDir>

/// A local server in a folder of its own, a QtLocalSocket that can connect to it and the plain
/// socket at the other end, through which a test says and hears bytes.
class LocalSocketPair {
public:
    explicit LocalSocketPair(bool connectNow = true)
    {
        m_server.listen(m_dir.filePath(QStringLiteral("server")));
        if (connectNow)
            connect();
    }

    QtAbstractServerAddress address() const
    {
        return QtAbstractServerAddress(m_server.fullServerName());
    }
    QSharedPointer<QtLocalSocket> socket() const { return m_socket; }
    QLocalSocket &peer() const { return *m_peer; }
    bool isConnected() const { return m_peer && m_socket->isConnected(); }

    void connect()
    {
        m_socket->connectToServer(address(), QIODevice::ReadWrite);
        accept();
    }
    /// Takes the connection that was made by other means than connect().
    void accept()
    {
        if (m_server.waitForNewConnection(10000))
            m_peer.reset(m_server.nextPendingConnection(), &QObject::deleteLater);
    }
    /// Bytes that are on their way as one piece when this returns.
    void say(const QByteArray &bytes)
    {
        m_peer->write(bytes);
        m_peer->flush();
    }

private:
    QTemporaryDir m_dir;
    QLocalServer m_server;
    QSharedPointer<QLocalSocket> m_peer;
    const QSharedPointer<QtLocalSocket> m_socket = QSharedPointer<QtLocalSocket>::create();
};
