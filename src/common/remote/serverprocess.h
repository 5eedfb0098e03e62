#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <QStringList>

#include <sys/types.h>

#include <memory>

class QSocketNotifier;

/**
 * A detached program: it has its own session, default signal handlers, and none of this process's
 * open files. It outlives this object and this process; as long as both live, its end is reported.
 *
 * Its stderr is a memory file for the first stderrBytes; further writes fail with EPERM. QProcess
 * supports neither for a detached program. Belongs to one thread.
 */
class ServerProcess : public QObject {
    Q_OBJECT
public:
    static constexpr int stderrBytes = 8192;

    explicit ServerProcess(QObject *parent = nullptr);
    ~ServerProcess() override;
    Q_DISABLE_COPY_MOVE(ServerProcess)

    /// Call it once. Empty if the program runs; else the failed call and the reason, as
    /// "execv: ...".
    QString start(const QString &program, const QStringList &arguments);

    /// Its output on stderr so far.
    QString stderrText() const;

Q_SIGNALS:
    /// The program has ended, with a status as in wait(2), so many milliseconds after start().
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
