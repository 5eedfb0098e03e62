#include "qtabstractsocketbasicipc.h"

#include "assertionlog.h"
#include "qtappdefaultlogger.h"

#include <QByteArrayList>
#include <QCborStreamReader>
#include <QCborStreamWriter>
#include <QTextStream>
#include <QTimer>
#include <QtEndian>

#include <limits>
#include <numeric>
#include <string>
#include <utility>

namespace {

using namespace std::chrono_literals;

constexpr quint64 handshakeMagic = 0x1234FAACDDEE0197;
constexpr qint32 ownProtocolNumber = 0;
constexpr qint32 unknownPeerVersion = -1;
constexpr int handshakeSize = sizeof(handshakeMagic) + sizeof(ownProtocolNumber);
constexpr qint32 noLengthYet = -1;
constexpr int maxSkippedNesting = 10000;
constexpr auto unreadBytesDelay = 10ms;

/// Limit of the socket's write buffer, into which it copies: at this size it is given no more.
constexpr qint64 enoughToWrite = qint64{128} * 1024;

constexpr int cborErrorSourceLine = 213;
constexpr int magicErrorSourceLine = 232;

template <typename Integer> void writeInteger(QIODevice &device, Integer value)
{
    const Integer bigEndian = qToBigEndian(value);
    device.write(reinterpret_cast<const char *>(&bigEndian), sizeof(bigEndian));
}

bool isDataMissing(QCborStreamReader &reader)
{
    return reader.lastError() == QCborError::EndOfFile;
}

} // namespace

QtAbstractSocketBasicIpc::QtAbstractSocketBasicIpc(QSharedPointer<QtAbstractSocket> socket,
                                                   IpcVersion ipcVersion, bool useCbor,
                                                   QObject *parent)
    : QObject(parent), m_socket(std::move(socket)), m_ipcVersion(ipcVersion), m_useCbor(useCbor)
{
    connect(m_socket.data(), &QtAbstractSocket::ioDeviceChanged, this,
            &QtAbstractSocketBasicIpc::connectSocketIODevice);
    connect(m_socket.data(), &QtAbstractSocket::connectedStateChanged, this,
            &QtAbstractSocketBasicIpc::onSocketConnectedStateChanged);
    connectSocketIODevice();
    onSocketConnectedStateChanged(m_socket->isConnected());
    // Bytes that arrived before this object was constructed.
    if (m_device && m_device->bytesAvailable() != 0)
        QTimer::singleShot(unreadBytesDelay, this, &QtAbstractSocketBasicIpc::onSocketReadyRead);
}

void QtAbstractSocketBasicIpc::send(const QByteArray &bytes)
{
    if (!m_useCbor)
        sendPieces({bytes});
    else if (m_connected && m_device && m_connection.cborWriter)
        m_connection.cborWriter->append(bytes);
}

void QtAbstractSocketBasicIpc::sendPieces(const QList<QByteArray> &pieces)
{
    if (!m_connected || !m_device || m_useCbor)
        return;
    const qsizetype size =
        std::accumulate(pieces.cbegin(), pieces.cend(), qsizetype{0},
                        [](qsizetype sum, const QByteArray &piece) { return sum + piece.size(); });
    if (size == 0
        || !checkOrLog(size <= std::numeric_limits<qint32>::max(), "message fits a frame"))
        return;
    QByteArray length(sizeof(qint32), Qt::Uninitialized);
    qToBigEndian(static_cast<qint32>(size), length.data());
    QList<QByteArray> frame = pieces;
    frame.prepend(length);
    if (size < enoughToWrite)
        frame = {frame.join()}; // a usual message is written with one system call
    // What is not encoded beforehand is one piece, which need not be shared.
    const qsizetype atOnce = pieces.size() == 1 ? frame.size() : 1;
    qint64 bypassed = 0;
    for (qsizetype i = 0; i < atOnce && m_device && m_connection.waiting.isEmpty(); ++i)
        bypassed += writeAtOnce(frame.takeFirst());
    m_connection.waiting.append(frame);
    writeWaiting();
    // The device knows nothing of these bytes. Last: a slot may end the connection.
    if (bypassed > 0 && m_device)
        Q_EMIT m_device->bytesWritten(bypassed);
}

qint64 QtAbstractSocketBasicIpc::writeAtOnce(const QByteArray &bytes)
{
    const qint64 written = m_device->bytesToWrite() == 0 ? m_socket->writeAtOnce(bytes) : 0;
    if (written < bytes.size())
        m_device->write(bytes.constData() + written, bytes.size() - written);
    return written;
}

void QtAbstractSocketBasicIpc::writeWaiting()
{
    while (m_device && !m_connection.waiting.isEmpty() && m_device->bytesToWrite() < enoughToWrite)
        m_device->write(m_connection.waiting.takeFirst());
}

void QtAbstractSocketBasicIpc::connectSocketIODevice()
{
    if (m_device)
        disconnect(m_device, nullptr, this, nullptr);
    m_device = m_socket->ioDevice();
    if (m_device) {
        connect(m_device, &QIODevice::readyRead, this,
                &QtAbstractSocketBasicIpc::onSocketReadyRead);
        connect(m_device, &QIODevice::bytesWritten, this, &QtAbstractSocketBasicIpc::writeWaiting);
    }
}

void QtAbstractSocketBasicIpc::onSocketConnectedStateChanged(bool connected)
{
    if (m_connected == connected)
        return;
    m_connected = connected;
    m_connection.waiting.clear();
    if (!connected)
        return;
    m_peerVersion = unknownPeerVersion;
    m_connection = {};
    if (m_ipcVersion != 0 && m_device)
        sendHandshake();
}

void QtAbstractSocketBasicIpc::sendHandshake()
{
    if (!m_useCbor) {
        writeInteger(*m_device, handshakeMagic);
        writeInteger(*m_device, ownProtocolNumber);
        return;
    }
    m_connection.cborReader = QSharedPointer<QCborStreamReader>::create(m_device.data());
    m_connection.cborWriter = QSharedPointer<QCborStreamWriter>::create(m_device.data());
    m_connection.cborWriter->startArray();
    m_connection.cborWriter->append(handshakeMagic);
    m_connection.cborWriter->append(ownProtocolNumber);
}

void QtAbstractSocketBasicIpc::onSocketReadyRead()
{
    // Reentrancy: a slot may end the connection, start another or destroy this object.
    const QPointer<QtAbstractSocketBasicIpc> self(this);
    if (!m_useCbor) {
        while (self && m_device && m_connection.intact && readDataStreamStep()) { }
        return;
    }
    const QSharedPointer<QCborStreamReader> reader = m_connection.cborReader;
    if (!reader || reader->device() != m_device || !m_connection.intact)
        return;
    if (isDataMissing(*reader))
        reader->reparse();
    while (self && m_device && m_connection.cborReader == reader && m_connection.intact
           && readCborStep(*reader)) { }
}

bool QtAbstractSocketBasicIpc::readDataStreamStep()
{
    if (m_ipcVersion >= 1 && m_peerVersion == unknownPeerVersion)
        return readHandshake();
    if (m_connection.pendingLength == noLengthYet) {
        if (m_device->bytesAvailable() < qint64(sizeof(m_connection.pendingLength)))
            return false;
        const auto length = readInteger<qint32>();
        if (length < 0)
            return fail(GenericErrorCode::Failure, __LINE__, "negative frame length");
        if (length == 0) {
            Q_EMIT received({});
            return true;
        }
        m_connection.pendingLength = length;
    }
    if (m_device->bytesAvailable() < m_connection.pendingLength)
        return false;
    const qint32 length = std::exchange(m_connection.pendingLength, noLengthYet);
    const QByteArray body = m_device->read(length);
    if (body.size() != length)
        return fail(GenericErrorCode::Failure, __LINE__, "bytes that had arrived cannot be read");
    Q_EMIT received(body);
    return true;
}

bool QtAbstractSocketBasicIpc::readHandshake()
{
    if (m_device->bytesAvailable() < handshakeSize)
        return false;
    if (readInteger<quint64>() != handshakeMagic)
        return fail(GenericErrorCode::ProtocolMismatch, magicErrorSourceLine, "wrong magic");
    m_peerVersion = readInteger<qint32>();
    return true;
}

bool QtAbstractSocketBasicIpc::readCborStep(QCborStreamReader &reader)
{
    // Checked first: while an item is incomplete, the reader still shows the one before.
    if (isDataMissing(reader))
        return false;
    // At the end of the array, and after any other error, the reader shows no type at all.
    if (reader.containerDepth() == 0) {
        if (!reader.isArray())
            return failCbor("the stream is not an array");
        reader.enterContainer();
        return true;
    }
    if (m_peerVersion == unknownPeerVersion)
        return readCborHandshake(reader);
    if (m_connection.chunks.isEmpty() && !reader.isByteArray())
        return failCbor("a message is not a byte string");

    const auto chunk = reader.readByteArray();
    if (chunk.status == QCborStreamReader::Error)
        return isDataMissing(reader) || failCbor("a message cannot be read");
    m_connection.chunks += chunk.data;
    if (chunk.status == QCborStreamReader::EndOfString)
        Q_EMIT received(std::exchange(m_connection.chunks, {}));
    return true;
}

bool QtAbstractSocketBasicIpc::readCborHandshake(QCborStreamReader &reader)
{
    if (!reader.isInteger())
        return failCbor("a number of the handshake is missing");
    if (m_connection.magicSeen) {
        m_peerVersion = static_cast<qint32>(reader.toInteger());
    } else {
        if (!reader.isUnsignedInteger() || reader.toUnsignedInteger() != handshakeMagic)
            return failCbor("wrong magic");
        m_connection.magicSeen = true;
    }
    reader.next(maxSkippedNesting);
    return true;
}

template <typename Integer> Integer QtAbstractSocketBasicIpc::readInteger()
{
    Integer bigEndian = 0;
    m_device->read(reinterpret_cast<char *>(&bigEndian), sizeof(bigEndian));
    return qFromBigEndian(bigEndian);
}

bool QtAbstractSocketBasicIpc::failCbor(const char *description)
{
    return fail(GenericErrorCode::Failure, cborErrorSourceLine, description);
}

bool QtAbstractSocketBasicIpc::fail(GenericErrorCode::Code code, int sourceLine,
                                    const char *description)
{
    m_connection.intact = false;
    const AbstractError error = genericError(
        code, "../../src/pmxcl/qt/ipc/qtabstractsocketbasicipc," + std::to_string(sourceLine),
        description);
    QString line = QStringLiteral("[QtAbstractSocketBasicIpc]: WARNING: broken peer. ");
    QTextStream stream(&line);
    stream << error;
    logLine(1, line);

    const QSharedPointer<QtAbstractSocket> socket = m_socket;
    Q_EMIT fatalError(error);
    socket->abort();
    return false;
}
