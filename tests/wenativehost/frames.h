#pragma once

#include <QByteArray>
#include <QFile>
#include <QtEndian>

#include <sys/mman.h>

#include <cstdio>

/// A message as a browser frames it: four bytes of length, then the body.
inline QByteArray frame(const QByteArray &body)
{
    const auto length = qToLittleEndian(static_cast<quint32>(body.size()));
    return QByteArray(reinterpret_cast<const char *>(&length), sizeof length) + body;
}

/// A memory file: written through its stream, or filled and read through it.
class StreamFile {
public:
    explicit StreamFile(const QByteArray &bytes = {})
        : m_file(::fdopen(::memfd_create("stream", 0), "w+"))
    {
        std::fwrite(bytes.constData(), 1, static_cast<size_t>(bytes.size()), m_file);
        std::rewind(m_file);
    }
    ~StreamFile() { std::fclose(m_file); }
    Q_DISABLE_COPY_MOVE(StreamFile)

    std::FILE *stream() const { return m_file; }

    /// The data that was flushed from the stream's buffer.
    QByteArray written() const
    {
        QFile file(QStringLiteral("/proc/self/fd/%1").arg(::fileno(m_file)));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

private:
    std::FILE *const m_file;
};
