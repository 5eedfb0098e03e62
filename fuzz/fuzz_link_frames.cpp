// The bytes of a connection, from an untrusted peer: the first byte selects the encoding, the
// handshake, and the size of the pieces in which the rest arrives. The pieces must not affect the
// messages.

#include "qtabstractsocket.h"
#include "qtabstractsocketbasicipc.h"
#include "require.h"

#include <QByteArrayList>
#include <QSharedPointer>
#include <QtEndian>

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace {

/// A fake socket device: provides the arrived bytes, and discards written ones.
class ArrivedBytes : public QIODevice {
public:
    ArrivedBytes() { open(ReadWrite | Unbuffered); }

    bool isSequential() const override { return true; }
    qint64 bytesAvailable() const override
    {
        return m_bytes.size() - m_read + QIODevice::bytesAvailable();
    }
    void arrive(const QByteArray &bytes)
    {
        m_bytes += bytes;
        Q_EMIT readyRead();
    }
    void drop() { m_read = m_bytes.size(); }

protected:
    qint64 readData(char *data, qint64 maxSize) override
    {
        const qint64 size = std::min<qint64>(maxSize, m_bytes.size() - m_read);
        std::copy_n(m_bytes.constData() + m_read, size, data);
        m_read += size;
        return size;
    }
    qint64 writeData(const char *, qint64 size) override { return size; }

private:
    QByteArray m_bytes;
    qsizetype m_read = 0;
};

class ConnectedSocket : public QtAbstractSocket {
public:
    void connectToServer(const QtAbstractServerAddress &, QIODeviceBase::OpenMode) override { }
    void disconnectFromHost() override { abort(); }
    void abort() override
    {
        m_device.drop();
        m_connected = false;
        Q_EMIT connectedStateChanged(false);
    }
    ArrivedBytes *ioDevice() const override { return &m_device; }
    bool isConnected() const override { return m_connected; }
    SocketState state() const override { return m_connected ? ConnectedState : UnconnectedState; }
    AbstractError error() const override { return {}; }

private:
    mutable ArrivedBytes m_device;
    bool m_connected = true;
};

struct Outcome {
    QByteArrayList messages;
    int errors = 0;
    bool operator==(const Outcome &) const = default;
};

struct Mode {
    bool useCbor;
    bool handshake;
};

Outcome read(const QByteArray &bytes, Mode mode, qsizetype pieceSize)
{
    const auto socket = QSharedPointer<ConnectedSocket>::create();
    const QtAbstractSocketBasicIpc ipc(socket, mode.handshake ? 1 : 0, mode.useCbor);
    Outcome outcome;
    QObject::connect(&ipc, &QtAbstractSocketBasicIpc::received, &ipc,
                     [&outcome](const QByteArray &message) { outcome.messages += message; });
    QObject::connect(&ipc, &QtAbstractSocketBasicIpc::fatalError, &ipc,
                     [&outcome] { ++outcome.errors; });
    for (qsizetype at = 0; at < bytes.size() && socket->isConnected(); at += pieceSize)
        socket->ioDevice()->arrive(bytes.mid(at, pieceSize));
    return outcome;
}

/// An independent parser of frames without a handshake.
Outcome meaningOfFrames(const QByteArray &bytes)
{
    Outcome outcome;
    QByteArrayView rest = bytes;
    while (rest.size() >= 4) {
        const auto length = qFromBigEndian<qint32>(rest.data());
        if (length < 0) {
            outcome.errors = 1;
            break;
        }
        if (rest.size() - 4 < length)
            break;
        outcome.messages += rest.sliced(4, length).toByteArray();
        rest = rest.sliced(4 + length);
    }
    return outcome;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size == 0)
        return 0;
    const Mode mode = {.useCbor = (data[0] & 1) != 0, .handshake = (data[0] & 2) != 0};
    const qsizetype pieceSize = 1 + (data[0] >> 2);
    const QByteArray bytes(reinterpret_cast<const char *>(data) + 1,
                           static_cast<qsizetype>(size) - 1);
    const Outcome whole = read(bytes, mode, std::max<qsizetype>(bytes.size(), 1));
    require(whole == read(bytes, mode, pieceSize));
    if (!mode.useCbor && !mode.handshake)
        require(whole == meaningOfFrames(bytes));
    return 0;
}
