#pragma once

#include <QObject>
#include <QSharedPointer>

class KovCommands;
class KovDownloadsQueue;
class QLocalSocket;
class QtAbstractSocketVhIpc;
class QtAppAbstractSettingsManager;
class QtLocalSocket;
class QtVhIpcCompositePart;
class RemoteJsonRequestsManager;

/// One connected client, a host or a command line: the application's end of its link.
class KovConnection : public QObject {
    Q_OBJECT
public:
    /// What all connections share.
    struct Services {
        QSharedPointer<QtAppAbstractSettingsManager> settings;
        QSharedPointer<KovDownloadsQueue> queue;
        QSharedPointer<KovCommands> commands;
    };

    /// The socket is connected.
    KovConnection(const QSharedPointer<QLocalSocket> &socket, const Services &services,
                  QObject *parent = nullptr);

    /// Closes after all written data has been sent.
    void disconnectFromClient();

Q_SIGNALS:
    void disconnected();

private:
    const QSharedPointer<QtLocalSocket> m_socket;
    const QSharedPointer<RemoteJsonRequestsManager> m_jsonRequests;
    const QSharedPointer<QtVhIpcCompositePart> m_parts;
    const QSharedPointer<QtAbstractSocketVhIpc> m_vhIpc;
};
