#include "kovpartialfile.h"

#include "kovunits.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QPointer>
#include <QThreadPool>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace {

constexpr mode_t everybodyReads = 0666; // less what the user's umask forbids

/// Returns 0 or the error number; EEXIST when there is something at "to" already.
int renameToNewPath(const QString &from, const QString &to)
{
    const QByteArray source = QFile::encodeName(from);
    const QByteArray target = QFile::encodeName(to);
    if (::renameat2(AT_FDCWD, source.constData(), AT_FDCWD, target.constData(), RENAME_NOREPLACE)
        == 0)
        return 0;
    if (errno != EINVAL)
        return errno;
    // A file system without RENAME_NOREPLACE.
    if (QFileInfo::exists(to))
        return EEXIST;
    return std::rename(source.constData(), target.constData()) == 0 ? 0 : errno;
}

/// A directory entry survives a power cut only if the directory was synced, too.
void syncFolderOf(const QString &path)
{
    const QByteArray folder = QFile::encodeName(QFileInfo(path).path());
    const int descriptor = ::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return;
    ::fsync(descriptor);
    ::close(descriptor);
}

} // namespace

QString systemErrorString(int errorNumber)
{
    return QString::fromLocal8Bit(std::strerror(errorNumber));
}

bool isDiskFull(int errorNumber) { return errorNumber == ENOSPC || errorNumber == EDQUOT; }

KovPartialFile::KovPartialFile(QString path, int descriptor)
    : m_path(std::move(path)), m_descriptor(descriptor)
{
}

KovPartialFile::~KovPartialFile() { ::close(m_descriptor); }

std::unique_ptr<KovPartialFile> KovPartialFile::create(const QString &path, QString &error)
{
    std::unique_ptr<KovPartialFile> file = open(path, O_CREAT | O_EXCL, error);
    if (file)
        file->m_unsyncedEntry = path;
    return file;
}

std::unique_ptr<KovPartialFile> KovPartialFile::open(const QString &path, QString &error)
{
    return open(path, 0, error);
}

std::unique_ptr<KovPartialFile> KovPartialFile::open(const QString &path, int flags, QString &error)
{
    const int descriptor =
        ::open(QFile::encodeName(path).constData(),
               O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | flags, everybodyReads);
    struct stat status = {};
    int errorNumber = descriptor < 0 || ::fstat(descriptor, &status) != 0 ? errno : 0;
    // Hard links would let a write reach a file elsewhere.
    if (errorNumber == 0
        && (!S_ISREG(status.st_mode) || status.st_uid != ::geteuid() || status.st_nlink != 1))
        errorNumber = EPERM;
    if (errorNumber == 0)
        return std::unique_ptr<KovPartialFile>(new KovPartialFile(path, descriptor));
    if (descriptor >= 0)
        ::close(descriptor);
    errno = errorNumber;
    error = QStringLiteral("cannot write \"%1\": %2").arg(path, systemErrorString(errorNumber));
    return nullptr;
}

bool KovPartialFile::check(bool ok)
{
    m_errorNumber = ok ? 0 : errno;
    return ok;
}

bool KovPartialFile::write(qint64 offset, const char *bytes, qint64 size)
{
    while (size > 0) {
        const ssize_t written = ::pwrite(m_descriptor, bytes, static_cast<size_t>(size), offset);
        if (written < 0 && errno == EINTR)
            continue;
        // A disk that fills up accepts a part first; only the next write has the error.
        if (written < 0)
            return check(false);
        offset += written;
        bytes += written;
        size -= written;
    }
    return check(true);
}

bool KovPartialFile::truncate(qint64 size) { return check(::ftruncate(m_descriptor, size) == 0); }

void KovPartialFile::sync(QObject *context, std::function<void(int)> synced)
{
    const int descriptor = ::fcntl(m_descriptor, F_DUPFD_CLOEXEC, 0);
    const int duplicationError = descriptor < 0 ? errno : 0; // errno is this thread's own
    const QPointer<QObject> guard(context);
    const QString unsyncedEntry = std::exchange(m_unsyncedEntry, {});
    QThreadPool::globalInstance()->start(
        [descriptor, duplicationError, unsyncedEntry, guard, synced = std::move(synced)] {
            if (!unsyncedEntry.isEmpty())
                syncFolderOf(unsyncedEntry);
            int errorNumber = duplicationError;
            if (descriptor >= 0) {
                errorNumber = ::fdatasync(descriptor) == 0 ? 0 : errno;
                ::close(descriptor);
            }
            // Posted to the application, since the context may be destroyed at any moment.
            QMetaObject::invokeMethod(
                QCoreApplication::instance(),
                [guard, synced, errorNumber] {
                    if (guard)
                        synced(errorNumber);
                },
                Qt::QueuedConnection);
        });
}

bool KovPartialFile::setModificationTime(const QDateTime &time)
{
    const qint64 milliseconds = time.toMSecsSinceEpoch();
    timespec modified = {};
    modified.tv_sec = milliseconds / millisecondsPerSecond;
    modified.tv_nsec =
        static_cast<long>(milliseconds % millisecondsPerSecond) * nanosecondsPerMillisecond;
    const timespec times[] = {modified, modified};
    return check(::futimens(m_descriptor, times) == 0);
}

bool KovPartialFile::moveTo(const QString &path)
{
    if (path == m_path)
        return true;
    const int error = renameToNewPath(m_path, path);
    m_errorNumber = error == EEXIST ? 0 : error;
    if (error != 0)
        return false;
    m_path = path;
    syncFolderOf(path);
    return true;
}

bool KovPartialFile::remove()
{
    return check(::unlink(QFile::encodeName(m_path).constData()) == 0);
}

qint64 KovPartialFile::size() const
{
    struct stat status = {};
    return ::fstat(m_descriptor, &status) == 0 ? status.st_size : -1;
}

QString KovPartialFile::errorString() const { return systemErrorString(m_errorNumber); }
