#pragma once

#include <QByteArray>
#include <QMutex>
#include <QString>

/**
 * Where log lines go: stderr or a file. Any thread.
 *
 * Failures never affect the caller: no signal is raised, no write blocks, and what cannot be
 * written is dropped. A destination that is also the process's stdout (unless it is a terminal or
 * another device) is refused: that is the message channel. So is a file that this class would not
 * have created: a link, another user's file, or one with permissions other than 0600; then lines
 * go to stderr, and the first one says why.
 */
class LogSink {
public:
    /// An empty path means stderr. A file is opened with the first line.
    LogSink(const QString &filePath, qint64 rotateAtBytes);
    ~LogSink();
    Q_DISABLE_COPY_MOVE(LogSink)

    /// Writes the text as one line, with its time, process id and level; control characters are
    /// escaped. A line reaches a file in one piece, among those of other threads and processes.
    void write(int level, const QString &text);

private:
    void prepareFile(qsizetype lineSize);
    void openStderr();
    void openFile();
    void fallBackToStderr(const QString &reason);
    void closeFile();
    void adopt(int fd);
    bool nameBelongsToAnotherFile() const;
    void renameFile();
    void writeAll(const QByteArray &line);

    /// Empty while the lines go to stderr.
    QByteArray m_filePath;
    const qint64 m_rotateAtBytes;
    QMutex m_mutex;
    int m_fd = -1;
    bool m_regularFile = false;
    bool m_lineTorn = false;
};
