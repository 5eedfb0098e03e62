#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <sys/types.h>

/// A native messaging host as a child process, with pipes to its stdin and stdout; its stderr is
/// not read. The process ends when its input ends. Every failure ends the benchmark.
class ChildProcess {
public:
    explicit ChildProcess(const QString &program, const QStringList &arguments = {});
    ~ChildProcess();
    Q_DISABLE_COPY_MOVE(ChildProcess)

    void write(const QByteArray &bytes);
    /// Reads so many bytes of its output.
    QByteArray read(qsizetype size);
    /// Reads one answer and returns its size including the length prefix.
    qsizetype takeAnswer();
    /// The time of a message and its answer, in microseconds.
    double roundTrip(const QByteArray &message);
    /// Writes the bytes while reading answers, until so many bytes have been read.
    void exchange(const QByteArray &bytes, qsizetype answerSize);
    /// Ends the input and waits for the end of the process; returns whether it ended cleanly.
    bool finish();
    /// Its CPU time so far, in microseconds.
    double computingTime() const;
    /// A line of /proc/PID/status that is in KiB, such as "VmRSS".
    long statusKibibytes(const QByteArray &name) const;

private:
    pid_t m_pid = -1;
    int m_input = -1;
    int m_output = -1;
};
