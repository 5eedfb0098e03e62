#pragma once

#include <QByteArray>
#include <QString>

#include <sys/types.h>

/// What a process has used by its end.
struct ChildUsage {
    bool exitedCleanly = false;
    /// In KiB.
    long peakMemory = 0;
};

/// A native messaging host that was just started, with pipes to its stdin and stdout; nobody reads
/// its stderr. The process
/// ends when its input ends. Every failure ends the benchmark.
class ChildProcess {
public:
    explicit ChildProcess(const QString &program);
    ~ChildProcess();
    Q_DISABLE_COPY_MOVE(ChildProcess)

    void write(const QByteArray &bytes);
    /// So many bytes of its output.
    QByteArray read(qsizetype size);
    /// Writes the bytes while it reads the answers, until there are so many bytes of them.
    void exchange(const QByteArray &bytes, qsizetype answerSize);
    /// Ends the input and waits for the end of the process.
    ChildUsage finish();

private:
    pid_t m_pid = -1;
    int m_input = -1;
    int m_output = -1;
};
