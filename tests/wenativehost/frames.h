#pragma once

#include <QByteArray>
#include <QtEndian>

#include <cstdio>

/// A message as a browser frames it: four bytes of length, then the body.
inline QByteArray frame(const QByteArray &body)
{
    const auto length = qToLittleEndian(static_cast<quint32>(body.size()));
    return QByteArray(reinterpret_cast<const char *>(&length), sizeof length) + body;
}

/// A stream that reads the bytes given.
class BytesStream {
public:
    explicit BytesStream(QByteArray bytes)
        : m_bytes(std::move(bytes)),
          // A stream over no bytes at all is refused.
          m_file(m_bytes.isEmpty()
                     ? std::fopen("/dev/null", "r")
                     : ::fmemopen(m_bytes.data(), static_cast<size_t>(m_bytes.size()), "r"))
    {
    }
    ~BytesStream() { std::fclose(m_file); }
    Q_DISABLE_COPY_MOVE(BytesStream)

    std::FILE *file() const { return m_file; }

private:
    QByteArray m_bytes;
    std::FILE *m_file;
};
