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
 * Exchanges messages, which are maps of variants, over a socket: received ones go to the
 * processor's processVh(), and those of its signal sendVh() are sent.
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
    /// Does nothing while not connected. In the data stream encoding an empty map is not sent.
    void send(const QHash<QString, QVariant> &map);
    /// The data stream encoding has no keep-alive message: nothing is sent.
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
