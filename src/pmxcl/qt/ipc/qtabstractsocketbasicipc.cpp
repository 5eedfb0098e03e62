#include "qtabstractsocketbasicipc.h"

#include "assertionlog.h"
#include "qtappdefaultlogger.h"

#include <QCborStreamReader>
#include <QCborStreamWriter>
#include <QTextStream>
#include <QTimer>
#include <QtEndian>

#include <limits>
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
    if (!m_connected || !m_device)
        return;
    if (m_useCbor) {
        if (m_connection.cborWriter)
            m_connection.cborWriter->append(bytes);
        return;
    }
    if (bytes.isEmpty()
        || !checkOrLog(bytes.size() <= std::numeric_limits<qint32>::max(), "message fits a frame"))
        return;
    writeInteger(*m_device, static_cast<qint32>(bytes.size()));
    m_device->write(bytes);
}

void QtAbstractSocketBasicIpc::connectSocketIODevice()
{
    if (m_device)
        disconnect(m_device, nullptr, this, nullptr);
    m_device = m_socket->ioDevice();
    if (m_device)
        connect(m_device, &QIODevice::readyRead, this,
                &QtAbstractSocketBasicIpc::onSocketReadyRead);
}

void QtAbstractSocketBasicIpc::onSocketConnectedStateChanged(bool connected)
{
    if (m_connected == connected)
        return;
    m_connected = connected;
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
    // Asked for first: while a part of an item is missing, the reader still shows what was before.
    if (isDataMissing(reader))
        return false;
    if (reader.lastError() != QCborError::NoError || !reader.hasNext())
        return failCbor("the stream is corrupt or has ended");
    if (reader.containerDepth() == 0) {
        if (!reader.isArray())
            return failCbor("the stream is not an array");
        reader.enterContainer();
        return true;
    }
    if (m_ipcVersion >= 1 && m_peerVersion == unknownPeerVersion)
        return readCborHandshake(reader);
    if (m_connection.chunks.isEmpty() && !reader.isByteArray())
        return failCbor("a message is not a byte string");

    const auto chunk = reader.readByteArray();
    switch (chunk.status) {
    case QCborStreamReader::Error:
        return isDataMissing(reader) ? false : failCbor("a message cannot be read");
    case QCborStreamReader::Ok:
        m_connection.chunks += chunk.data;
        break;
    case QCborStreamReader::EndOfString:
        Q_EMIT received(std::exchange(m_connection.chunks, {}));
        break;
    }
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
