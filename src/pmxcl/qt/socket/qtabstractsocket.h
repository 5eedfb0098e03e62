#pragma once

#include "abstracterror.h"
#include "qtabstractserveraddress.h"

#include <QIODevice>
#include <QObject>

/**
 * A connection to a server, whatever carries it. Belongs to one thread.
 *
 * An attempt that fails is told by errorOccurred() and stateChanged(); nothing is retried here.
 */
class QtAbstractSocket : public QObject {
    Q_OBJECT
public:
    enum SocketState : int {
        UnconnectedState = 0,
        HostLookupState = 1,
        ConnectingState = 2,
        ConnectedState = 3,
        BoundState = 4,
        ListeningState = 5,
        ClosingState = 6,
    };
    Q_ENUM(SocketState)

    explicit QtAbstractSocket(QObject *parent = nullptr);

    virtual void connectToServer(const QtAbstractServerAddress &address,
                                 QIODeviceBase::OpenMode mode) = 0;
    /// Closes after what was written has left.
    virtual void disconnectFromHost() = 0;
    /// Closes at once; what was written and has not left is dropped.
    virtual void abort() = 0;
    /// The device that carries the bytes; may be null.
    virtual QIODevice *ioDevice() const = 0;
    /// True between connectedStateChanged(true) and connectedStateChanged(false).
    virtual bool isConnected() const = 0;
    virtual SocketState state() const = 0;
    /// The last error.
    virtual AbstractError error() const = 0;

    /// Tells the peer that nothing more will come; what the peer still says is received. To be
    /// called when all that was written has left. Without effect where the transport knows no such
    /// thing.
    virtual void closeSending();
    /// Whether the peer has taken all that has left this process, as far as the transport can tell.
    virtual bool hasPeerTakenAll() const;
    /// Writes past the device, which has nothing to write, without waiting for the event loop, and
    /// returns how many bytes; the device is to be given the others. Emits no signal: what fails is
    /// told when the device is used. 0 where the transport cannot do it.
    virtual qint64 writeAtOnce(QByteArrayView bytes);

    bool isConnecting() const;
    bool isDisconnecting() const;

Q_SIGNALS:
    void ioDeviceChanged();
    void connectedStateChanged(bool connected);
    void errorOccurred(const AbstractError &error);
    void stateChanged(QtAbstractSocket::SocketState state);
};
