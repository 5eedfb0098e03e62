#include "serverprocess.h"

#include "systemerrortext.h"

#include <QFile>
#include <QList>
#include <QSocketNotifier>

#include <fcntl.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>

namespace {

/// A memory file of a fixed size (sealed), so that writing to it never blocks, and its memory is
/// limited.
int createStderr()
{
    const int file = ::memfd_create("stderr", MFD_CLOEXEC | MFD_ALLOW_SEALING);
    if (::ftruncate(file, ServerProcess::stderrBytes) != 0
        || ::fcntl(file, F_ADD_SEALS, F_SEAL_GROW | F_SEAL_SHRINK | F_SEAL_SEAL) != 0) {
        ::close(file);
        return -1;
    }
    return file;
}

/// How posix_spawn(3) is to start the program.
class SpawnSettings {
public:
    explicit SpawnSettings(int stderrFile)
    {
        ::posix_spawnattr_init(&m_attributes);
        ::posix_spawnattr_setflags(
            &m_attributes, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);
        sigset_t signals;
        ::sigfillset(&signals);
        ::posix_spawnattr_setsigdefault(&m_attributes, &signals);
        ::sigemptyset(&signals);
        ::posix_spawnattr_setsigmask(&m_attributes, &signals);

        ::posix_spawn_file_actions_init(&m_actions);
        ::posix_spawn_file_actions_addopen(&m_actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        ::posix_spawn_file_actions_addopen(&m_actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
        if (stderrFile >= 0)
            ::posix_spawn_file_actions_adddup2(&m_actions, stderrFile, STDERR_FILENO);
        else
            ::posix_spawn_file_actions_addopen(&m_actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
        // When the host ends, the browser waits until its pipes are closed.
        ::posix_spawn_file_actions_addclosefrom_np(&m_actions, STDERR_FILENO + 1);
    }
    ~SpawnSettings()
    {
        ::posix_spawn_file_actions_destroy(&m_actions);
        ::posix_spawnattr_destroy(&m_attributes);
    }
    Q_DISABLE_COPY_MOVE(SpawnSettings)

    int spawn(pid_t *pid, const char *program, char *const *arguments) const
    {
        return ::posix_spawn(pid, program, &m_actions, &m_attributes, arguments, environ);
    }

private:
    posix_spawn_file_actions_t m_actions = {};
    posix_spawnattr_t m_attributes = {};
};

} // namespace

ServerProcess::ServerProcess(QObject *parent) : QObject(parent) { }

ServerProcess::~ServerProcess()
{
    m_notifier.reset();
    for (const int descriptor : {m_pidDescriptor, m_stderr}) {
        if (descriptor >= 0)
            ::close(descriptor);
    }
}

QString ServerProcess::start(const QString &program, const QStringList &arguments)
{
    QList<QByteArray> texts{QFile::encodeName(program)};
    for (const QString &argument : arguments)
        texts += argument.toLocal8Bit();
    QList<char *> pointers;
    for (QByteArray &text : texts)
        pointers += text.data();
    pointers += nullptr;

    m_stderr = createStderr();
    m_sinceStart.start();
    const int error =
        SpawnSettings(m_stderr).spawn(&m_pid, texts.constFirst().constData(), pointers.data());
    if (error != 0)
        return QStringLiteral("execv: ") + systemErrorText(error);
    watch();
    return {};
}

void ServerProcess::watch()
{
    // Linux 5.3 and later; on an older kernel the end is not noticed.
    m_pidDescriptor = static_cast<int>(::syscall(SYS_pidfd_open, m_pid, 0));
    if (m_pidDescriptor < 0)
        return;
    ::fcntl(m_pidDescriptor, F_SETFD, FD_CLOEXEC);
    m_notifier = std::make_unique<QSocketNotifier>(m_pidDescriptor, QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &ServerProcess::onEnded);
}

void ServerProcess::onEnded()
{
    int status = 0;
    if (::waitpid(m_pid, &status, WNOHANG) != m_pid)
        return;
    m_notifier->setEnabled(false);
    Q_EMIT ended(status, m_sinceStart.elapsed());
}

QString ServerProcess::stderrText() const
{
    // The two processes share the file offset.
    const auto written = ::lseek(m_stderr, 0, SEEK_CUR);
    QByteArray bytes(std::clamp<qsizetype>(written, 0, stderrBytes), '\0');
    const auto count = ::pread(m_stderr, bytes.data(), static_cast<size_t>(bytes.size()), 0);
    return QString::fromLocal8Bit(bytes.first(std::max<qsizetype>(count, 0)));
}
