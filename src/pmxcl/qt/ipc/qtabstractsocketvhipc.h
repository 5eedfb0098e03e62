#pragma once

#include "abstracterror.h"
#include "ipcversion.h"

#include <QHash>
#include <QObject>
#include <QSharedPointer>
#include <QString>
#include <QVariant>

class QtAbstractSocket;
class QtAbstractSocketBasicIpc;
class QtAbstractVhIpcPart;

/**
 * Carries messages that are maps of variants over a socket: what arrives goes to the processor's
 * processVh(), what the processor asks to send is sent.
 *
 * Errors are those of QtAbstractSocketBasicIpc and a CBOR body that cannot be decoded. A data
 * stream body that cannot be decoded reaches the processor as an empty map. Belongs to the socket's
 * thread.
 */
class QtAbstractSocketVhIpc : public QObject {
    Q_OBJECT
public:
    QtAbstractSocketVhIpc(QSharedPointer<QtAbstractSocket> socket,
                          QSharedPointer<QtAbstractVhIpcPart> processor, IpcVersion ipcVersion,
                          bool useCbor, QObject *parent = nullptr);

    QSharedPointer<QtAbstractSocket> socket() const { return m_socket; }
    QSharedPointer<QtAbstractVhIpcPart> processor() const { return m_processor; }

public Q_SLOTS:
    /// Nothing while not connected. With the data stream encoding an empty map is not sent.
    void send(const QHash<QString, QVariant> &map);
    /// With the data stream encoding there is no keep-alive message and nothing is sent.
    void sendKeepAliveMessage();

Q_SIGNALS:
    void gotKeepAliveMessage();
    void fatalError(const AbstractError &error);

private Q_SLOTS:
    void onReceived(const QByteArray &bytes);

private:
    const QSharedPointer<QtAbstractSocket> m_socket;
    const QSharedPointer<QtAbstractVhIpcPart> m_processor;
    const bool m_useCbor;
    QtAbstractSocketBasicIpc *const m_basicIpc;
};
