#pragma once

#include "abstracterror.h"
#include "ipcversion.h"
#include "qtabstractsocket.h"

#include <QByteArray>
#include <QIODevice>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QSharedPointer>

class QCborStreamReader;
class QCborStreamWriter;

/**
 * Splits the byte stream of a socket into messages (framing), and performs the handshake, if any,
 * at the start of a connection.
 *
 * Two encodings, the same in both directions:
 *  - data stream: [magic, version] frame…, a frame being a signed 32-bit big-endian length and as
 *    many bytes. Empty messages are received but not sent.
 *  - CBOR (RFC 8949): one array of indefinite length that is never closed: magic, version, then one
 *    byte string per message. Needs a handshake: with version 0 nothing is sent or received.
 *
 * A message may have any length up to 2 GiB - 1 byte. It stays in the socket's buffer until it is
 * complete, and no memory is allocated for bytes that have not arrived.
 *
 * When the peer violates the protocol, that is logged, reported by fatalError() (category
 * "GenericError"), and the connection is closed with QtAbstractSocket::abort(). Belongs to the
 * socket's thread.
 */
class QtAbstractSocketBasicIpc : public QObject {
    Q_OBJECT
public:
    QtAbstractSocketBasicIpc(QSharedPointer<QtAbstractSocket> socket, IpcVersion ipcVersion,
                             bool useCbor, QObject *parent = nullptr);

    /// Does nothing while not connected.
    void send(const QByteArray &bytes);
    /// One message in pieces, in the data stream encoding. A long one is passed to the socket piece
    /// by piece; the pieces are shared until then.
    void sendPieces(const QList<QByteArray> &pieces);

    /// The version that the peer sent; -1 while unknown.
    qint32 peerVersion() const { return m_peerVersion; }

Q_SIGNALS:
    void received(const QByteArray &bytes);
    void fatalError(const AbstractError &error);

private Q_SLOTS:
    void connectSocketIODevice();
    void onSocketConnectedStateChanged(bool connected);
    void onSocketReadyRead();
    void writeWaiting();

private:
    /// The state of one connection.
    struct ConnectionData {
        QSharedPointer<QCborStreamWriter> cborWriter;
        QSharedPointer<QCborStreamReader> cborReader;
        /// A message whose chunks are still arriving.
        QByteArray chunks;
        bool magicSeen = false;
        /// The length of the frame that is arriving; -1 before it was read.
        qint32 pendingLength = -1;
        /// Whether the peer has followed the protocol; after a violation nothing more is read.
        bool intact = true;
        /// Data to write when the socket's write buffer has room.
        QList<QByteArray> waiting;
    };

    void sendHandshake();
    /// Returns how many bytes bypassed the device.
    qint64 writeAtOnce(const QByteArray &bytes);
    /// Both do one step of reading; false if there is nothing more to read for now.
    bool readDataStreamStep();
    bool readCborStep(QCborStreamReader &reader);
    bool readHandshake();
    bool readCborHandshake(QCborStreamReader &reader);
    template <typename Integer> Integer readInteger();
    bool failCbor(const char *description);
    /// Always false.
    bool fail(GenericErrorCode::Code code, int sourceLine, const char *description);

    const QSharedPointer<QtAbstractSocket> m_socket;
    const IpcVersion m_ipcVersion;
    const bool m_useCbor;
    bool m_connected = false;
    qint32 m_peerVersion = -1;
    QPointer<QIODevice> m_device;
    ConnectionData m_connection;
};
