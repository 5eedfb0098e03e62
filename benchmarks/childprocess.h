#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <sys/types.h>

/// What a process has used by its end.
struct ChildUsage {
    bool exitedCleanly = false;
    /// In KiB.
    long peakMemory = 0;
};

/// A native messaging host that was just started, with pipes to its stdin and stdout; its stderr
/// is not read. The process ends when its input ends. Every failure ends the benchmark.
class ChildProcess {
public:
    explicit ChildProcess(const QString &program, const QStringList &arguments = {});
    ~ChildProcess();
    Q_DISABLE_COPY_MOVE(ChildProcess)

    void write(const QByteArray &bytes);
    /// So many bytes of its output.
    QByteArray read(qsizetype size);
    /// Reads one answer and returns its size with its length prefix.
    qsizetype takeAnswer();
    /// How long a message takes there and its answer back, in microseconds.
    double roundTrip(const QByteArray &message);
    /// Writes the bytes while it reads the answers, until there are so many bytes of them.
    void exchange(const QByteArray &bytes, qsizetype answerSize);
    /// Ends the input and waits for the end of the process.
    ChildUsage finish();
    /// How long it has been computing so far, in microseconds.
    double computingTime() const;
    /// A line of its status that is given in KiB, such as "VmRSS".
    long statusKibibytes(const QByteArray &name) const;

private:
    pid_t m_pid = -1;
    int m_input = -1;
    int m_output = -1;
};
