#pragma once

#include <QByteArray>
#include <QMutex>
#include <QString>

/**
 * Where log lines go: stderr or a file. Any thread.
 *
 * Nothing that it meets disturbs the caller: no signal is raised and no write waits for a reader;
 * what cannot be written is dropped. A destination that is also the process's stdout (unless a
 * terminal or another device) is refused: that is the message channel.
 */
class LogSink {
public:
    /// An empty path means stderr. A file is opened when the first line comes.
    LogSink(const QString &filePath, qint64 rotateAtBytes);
    ~LogSink();
    Q_DISABLE_COPY_MOVE(LogSink)

    /// The line ends with its line break. A line reaches a file in one piece, among the lines of
    /// other threads and processes.
    void write(const QByteArray &line);

private:
    void prepareFile(qsizetype lineSize);
    void openFile();
    void closeFile();
    void adopt(int fd);
    bool nameBelongsToAnotherFile() const;
    bool renameFile();
    void writeAll(const QByteArray &line);

    const QByteArray m_filePath;
    const qint64 m_rotateAtBytes;
    QMutex m_mutex;
    int m_fd = -1;
    bool m_regularFile = false;
    bool m_lineTorn = false;
};
