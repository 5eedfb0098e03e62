#include "logsink.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMutexLocker>

#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <climits>
#include <csignal>
#include <cstdio>
#include <ctime>
#include <utility>

namespace {

/// Readable and writable by the owner only.
constexpr mode_t fileMode = 0600;

/// RAII: blocks SIGPIPE in this thread, and prevents the thread from being terminated in the middle
/// of a line, while it holds the lock.
class UndisturbedThread {
public:
    UndisturbedThread()
    {
        ::pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &m_cancelState);
        ::sigemptyset(&m_brokenPipe);
        ::sigaddset(&m_brokenPipe, SIGPIPE);
        sigset_t pending;
        ::sigemptyset(&pending);
        ::sigpending(&pending);
        m_wasPending = ::sigismember(&pending, SIGPIPE) == 1;
        ::pthread_sigmask(SIG_BLOCK, &m_brokenPipe, &m_mask);
    }

    ~UndisturbedThread()
    {
        const timespec noWait = {};
        if (!m_wasPending)
            ::sigtimedwait(&m_brokenPipe, nullptr, &noWait);
        ::pthread_sigmask(SIG_SETMASK, &m_mask, nullptr);
        ::pthread_setcancelstate(m_cancelState, nullptr);
    }
    Q_DISABLE_COPY_MOVE(UndisturbedThread)

private:
    int m_cancelState = 0;
    sigset_t m_brokenPipe = {};
    sigset_t m_mask = {};
    bool m_wasPending = false;
};

bool isSameFile(const struct stat &one, const struct stat &other)
{
    return one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

bool isControl(QChar character) { return character < u' ' || character == u'\x7f'; }

/// The text with line breaks and other control characters escaped: texts may come from outside.
QString asOneLine(const QString &text)
{
    if (std::none_of(text.cbegin(), text.cend(), isControl))
        return text;
    QString line;
    for (const QChar character : text) {
        if (character == u'\n')
            line += QStringLiteral("\\n");
        else if (isControl(character))
            line += QStringLiteral("\\x%1").arg(character.unicode(), 2, 16, QChar(u'0'));
        else
            line += character;
    }
    return line;
}

QByteArray formattedLine(int level, const QString &text)
{
    using namespace std::chrono;
    // With QDateTime for the time, a whole line would take two and a half times as long.
    const auto now = floor<milliseconds>(system_clock::now());
    const year_month_day date(floor<days>(now));
    const hh_mm_ss time(now - floor<days>(now));
    std::array<char, 100> prefix = {};
    const int length = std::snprintf(
        prefix.data(), prefix.size(), "%04d-%02u-%02uT%02d:%02d:%02d.%03dZ [%d] %d ",
        static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
        static_cast<unsigned>(date.day()), static_cast<int>(time.hours().count()),
        static_cast<int>(time.minutes().count()), static_cast<int>(time.seconds().count()),
        static_cast<int>(time.subseconds().count()), ::getpid(), level);
    return QByteArray(prefix.data(), length) + asOneLine(text).toUtf8() + '\n';
}

} // namespace

LogSink::LogSink(const QString &filePath, qint64 rotateAtBytes)
    : m_filePath(filePath.isEmpty() ? QByteArray()
                                    : QFile::encodeName(QFileInfo(filePath).absoluteFilePath())),
      m_rotateAtBytes(rotateAtBytes)
{
    if (m_filePath.isEmpty())
        openStderr();
}

LogSink::~LogSink() { closeFile(); }

void LogSink::write(int level, const QString &text)
{
    const QByteArray line = formattedLine(level, text);
    const UndisturbedThread undisturbed;
    const QMutexLocker locker(&m_mutex);
    if (!m_filePath.isEmpty())
        prepareFile(line.size());
    writeAll(line);
}

// Several hosts share one log file. The first one that finds it full renames it; the others notice
// that the path now belongs to another file, and reopen it.
void LogSink::prepareFile(qsizetype lineSize)
{
    if (nameBelongsToAnotherFile())
        closeFile();
    if (m_fd < 0)
        openFile();
    if (m_filePath.isEmpty())
        return;
    struct stat opened = {};
    (void)::fstat(m_fd, &opened);
    if (opened.st_size > 0 && opened.st_size + lineSize > m_rotateAtBytes) {
        renameFile();
        if (nameBelongsToAnotherFile()) {
            closeFile();
            openFile();
        }
    }
}

void LogSink::openFile()
{
    QDir().mkpath(QFileInfo(QFile::decodeName(m_filePath)).absolutePath());
    const int fd = ::open(
        m_filePath.constData(),
        O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC | O_NOCTTY | O_NONBLOCK | O_NOFOLLOW, fileMode);
    if (fd == -1 && errno == ELOOP) {
        fallBackToStderr(QStringLiteral("it is a link"));
        return;
    }
    struct stat file = {};
    if (::fstat(fd, &file) == 0
        && (file.st_uid != ::geteuid() || (file.st_mode & ALLPERMS) != fileMode)) {
        ::close(fd);
        fallBackToStderr(
            QStringLiteral("it belongs to user %1 and has the mode %2")
                .arg(QString::number(file.st_uid), QString::number(file.st_mode & ALLPERMS, 8)));
        return;
    }
    adopt(fd);
}

void LogSink::fallBackToStderr(const QString &reason)
{
    const QString path = QFile::decodeName(std::exchange(m_filePath, QByteArray()));
    openStderr();
    writeAll(formattedLine(
        1, QStringLiteral("[LogSink]: WARNING: \"%1\" is not written to: %2").arg(path, reason)));
}

// A duplicate: if stderr were closed, its number would soon belong to another file.
void LogSink::openStderr() { adopt(::fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1)); }

void LogSink::closeFile()
{
    if (m_fd != -1)
        ::close(m_fd);
    m_fd = -1;
}

void LogSink::adopt(int fd)
{
    m_fd = fd;
    struct stat own = {};
    struct stat channel = {};
    if (::fstat(fd, &own) != 0)
        return;
    m_regularFile = S_ISREG(own.st_mode);
    if (!S_ISCHR(own.st_mode) && ::fstat(STDOUT_FILENO, &channel) == 0 && isSameFile(own, channel))
        closeFile();
}

bool LogSink::nameBelongsToAnotherFile() const
{
    // What is not there stays zero, and differs from any file.
    struct stat opened = {};
    struct stat named = {};
    (void)::fstat(m_fd, &opened);
    (void)::stat(m_filePath.constData(), &named);
    return !isSameFile(opened, named);
}

// Only the holder of the file's lock renames it, so that two processes that find it full at the
// same moment do not rename it twice. The other one need not wait for the lock.
void LogSink::renameFile()
{
    if (::flock(m_fd, LOCK_EX | LOCK_NB) != 0)
        return;
    if (!nameBelongsToAnotherFile())
        (void)std::rename(m_filePath.constData(), (m_filePath + ".1").constData());
    ::flock(m_fd, LOCK_UN);
}

void LogSink::writeAll(const QByteArray &line)
{
    const QByteArray text = m_lineTorn ? '\n' + line : line;
    qsizetype written = 0;
    while (written < text.size()) {
        // The reader may have stopped reading: write only what the pipe takes without blocking.
        // A regular file is always ready, no file never.
        pollfd target = {m_fd, POLLOUT, 0};
        (void)::poll(&target, 1, 0);
        if ((target.revents & POLLOUT) == 0)
            break;
        const qsizetype rest = text.size() - written;
        const qsizetype piece = m_regularFile ? rest : std::min<qsizetype>(rest, PIPE_BUF);
        const ssize_t count = ::write(m_fd, text.constData() + written, static_cast<size_t>(piece));
        if (count <= 0)
            break;
        written += count;
    }
    if (written > 0)
        m_lineTorn = written < text.size();
}
