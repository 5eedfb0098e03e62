#pragma once

#include "abstracterror.h"
#include "qtabstractserveraddress.h"

#include <QIODevice>
#include <QObject>

/**
 * A connection to a server over any transport. Belongs to one thread.
 *
 * A failed attempt is reported by errorOccurred() and stateChanged(); it is not retried here.
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
    /// Closes after all written data has been sent.
    virtual void disconnectFromHost() = 0;
    /// Closes at once; written data that has not been sent is dropped.
    virtual void abort() = 0;
    /// The device to read and write; may be null.
    virtual QIODevice *ioDevice() const = 0;
    /// True between connectedStateChanged(true) and connectedStateChanged(false).
    virtual bool isConnected() const = 0;
    virtual SocketState state() const = 0;
    /// The last error.
    virtual AbstractError error() const = 0;

    /// Half-close: tells the peer that no more data will come; data from the peer is still
    /// received. Call it when all written data has been sent. No effect if the transport does not
    /// support it.
    virtual void closeSending();
    /// Whether the peer has read all sent data, as far as the transport knows.
    virtual bool hasPeerTakenAll() const;
    /// Writes directly, bypassing the device, whose write buffer must be empty, and the event loop.
    /// Returns the number of written bytes; write the others to the device. Emits no signal, not
    /// even the device's bytesWritten(), which the caller owes those who wait for it; an error
    /// shows when the device is used. 0 if the transport does not support it.
    virtual qint64 writeAtOnce(QByteArrayView bytes);

    bool isConnecting() const;
    bool isDisconnecting() const;

Q_SIGNALS:
    void ioDeviceChanged();
    void connectedStateChanged(bool connected);
    void errorOccurred(const AbstractError &error);
    void stateChanged(QtAbstractSocket::SocketState state);
};
