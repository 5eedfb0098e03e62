#include "qtabstractsocketvhipc.h"

#include "qtabstractsocket.h"
#include "qtabstractsocketbasicipc.h"
#include "qtabstractvhipcpart.h"
#include "qtappdefaultlogger.h"
#include "qtvhbodycodec.h"

#include <utility>

QtAbstractSocketVhIpc::QtAbstractSocketVhIpc(QSharedPointer<QtAbstractSocket> socket,
                                             QSharedPointer<QtAbstractVhIpcPart> processor,
                                             IpcVersion ipcVersion, bool useCbor, QObject *parent)
    : QObject(parent), m_socket(std::move(socket)), m_processor(std::move(processor)),
      m_useCbor(useCbor),
      m_basicIpc(new QtAbstractSocketBasicIpc(m_socket, ipcVersion, useCbor, this))
{
    connect(m_basicIpc, &QtAbstractSocketBasicIpc::received, this,
            &QtAbstractSocketVhIpc::onReceived);
    connect(m_basicIpc, &QtAbstractSocketBasicIpc::fatalError, this,
            &QtAbstractSocketVhIpc::fatalError);
    connect(m_processor.data(), &QtAbstractVhIpcPart::sendVh, this, &QtAbstractSocketVhIpc::send);
    if (!useCbor)
        m_processor->setAcceptsEncoded([] { return true; });
    connect(m_socket.data(), &QtAbstractSocket::connectedStateChanged, m_processor.data(),
            &QtAbstractVhIpcPart::onConnectChanged);
    if (m_socket->isConnected())
        m_processor->onConnectChanged(true);
}

void QtAbstractSocketVhIpc::send(const QHash<QString, QVariant> &map)
{
    if (m_useCbor)
        m_basicIpc->send(QtVhBodyCodec::toCbor(map));
    else
        m_basicIpc->sendPieces(QtVhBodyCodec::toDataStreamPieces(map));
}

void QtAbstractSocketVhIpc::sendKeepAliveMessage() { m_basicIpc->send({}); }

void QtAbstractSocketVhIpc::onReceived(const QByteArray &bytes)
{
    if (bytes.isEmpty()) {
        Q_EMIT gotKeepAliveMessage();
        return;
    }
    const auto map =
        m_useCbor ? QtVhBodyCodec::fromCbor(bytes) : QtVhBodyCodec::fromDataStream(bytes);
    if (!map) {
        logLine(1,
                QStringLiteral("[QtAbstractSocketVhIpc]: WARNING: a message of %1 bytes cannot be "
                               "decoded")
                    .arg(bytes.size()));
    }
    // Reentrancy: the message may end the link, and destroy this object.
    const QSharedPointer<QtAbstractVhIpcPart> processor = m_processor;
    if (map || !m_useCbor) {
        processor->processVh(map.value_or(QHash<QString, QVariant>()));
        return;
    }
    const QSharedPointer<QtAbstractSocket> socket = m_socket;
    Q_EMIT fatalError(genericError(GenericErrorCode::Failure,
                                   "../../src/pmxcl/qt/ipc/qtabstractsocketvhipc,86",
                                   "a message cannot be decoded"));
    socket->abort();
}
