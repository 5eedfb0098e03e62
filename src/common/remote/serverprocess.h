#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <QStringList>

#include <sys/types.h>

#include <memory>

class QSocketNotifier;

/**
 * A program that runs on its own: in its own session, with default signals and none of this
 * process's open files. It outlives this object and this process; as long as both live, its end is
 * noticed.
 *
 * Its stderr is a file in memory that keeps the first stderrBytes; further writes fail with EPERM.
 * QProcess can do neither for a program that is to outlive it. Belongs to one thread.
 */
class ServerProcess : public QObject {
    Q_OBJECT
public:
    static constexpr int stderrBytes = 8192;

    explicit ServerProcess(QObject *parent = nullptr);
    ~ServerProcess() override;
    Q_DISABLE_COPY_MOVE(ServerProcess)

    /// Once. Empty when the program runs; otherwise which call failed and why, as "execv: ...".
    QString start(const QString &program, const QStringList &arguments);

    /// What it has written to stderr so far.
    QString stderrText() const;

Q_SIGNALS:
    /// The program has ended: with a status as wait(2) gives it, so many milliseconds after
    /// start().
    void ended(int waitStatus, qint64 ranForMs);

private:
    void watch();
    void onEnded();

    QElapsedTimer m_sinceStart;
    pid_t m_pid = 0;
    int m_pidDescriptor = -1;
    int m_stderr = -1;
    std::unique_ptr<QSocketNotifier> m_notifier;
};
