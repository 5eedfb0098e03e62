#pragma once

#include <QByteArrayView>
#include <QtEndian>

/**
 * A cursor over received bytes that scans them before they are decoded. It tracks how many items
 * the bytes have announced: a body that announces more items than its bytes can hold fails at once.
 *
 * Every function returns false if there are too few bytes; then the scan is over.
 */
class QtScanCursor {
public:
    explicit QtScanCursor(QByteArrayView bytes) : m_bytes(bytes) { }

    /// A big-endian integer.
    template <typename Integer> bool read(Integer &value)
    {
        if (free() < sizeof(value))
            return false;
        value = qFromBigEndian<Integer>(m_bytes.data());
        m_bytes = m_bytes.sliced(sizeof(value));
        return true;
    }
    bool take(quint64 size, QByteArrayView &bytes)
    {
        if (free() < size)
            return false;
        bytes = m_bytes.first(static_cast<qsizetype>(size));
        m_bytes = m_bytes.sliced(static_cast<qsizetype>(size));
        return true;
    }
    bool skip(quint64 size)
    {
        QByteArrayView skipped;
        return take(size, skipped);
    }
    QByteArrayView rest() const { return m_bytes; }

    /// Announces that so many items follow, each of at least minSize bytes.
    bool announce(quint64 count, quint64 minSize)
    {
        if (count > free() / minSize)
            return false;
        m_announced += count * minSize;
        return true;
    }
    /// The next announced item begins here.
    void begin(quint64 minSize) { m_announced -= minSize; }

private:
    /// Bytes that are not reserved for announced items.
    quint64 free() const { return static_cast<quint64>(m_bytes.size()) - m_announced; }

    QByteArrayView m_bytes;
    quint64 m_announced = 0;
};
