#include "qtabstractsocket.h"

QtAbstractSocket::QtAbstractSocket(QObject *parent) : QObject(parent)
{
    // Both cross queued connections.
    qRegisterMetaType<AbstractError>();
    qRegisterMetaType<QtAbstractSocket::SocketState>();
}

void QtAbstractSocket::closeSending() { }

qint64 QtAbstractSocket::writeAtOnce(QByteArrayView) { return 0; }

bool QtAbstractSocket::hasPeerTakenAll() const { return true; }

bool QtAbstractSocket::isConnecting() const
{
    const SocketState current = state();
    return current == HostLookupState || current == ConnectingState;
}

bool QtAbstractSocket::isDisconnecting() const { return state() == ClosingState; }
