#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

#include <cstdio>

/// A temporary file that a sender writes to.
class OutputFile {
public:
    OutputFile() : m_file(std::tmpfile()) { }
    ~OutputFile() { std::fclose(m_file); }
    Q_DISABLE_COPY_MOVE(OutputFile)

    std::FILE *file() const { return m_file; }

    /// What has left the stream's buffer.
    QByteArray written() const
    {
        QFile file(QStringLiteral("/proc/self/fd/%1").arg(::fileno(m_file)));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

private:
    std::FILE *const m_file;
};
