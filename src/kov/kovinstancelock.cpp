#include "kovinstancelock.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

KovInstanceLock::KovInstanceLock(QString path) : m_path(std::move(path)) { }

KovInstanceLock::~KovInstanceLock()
{
    if (m_descriptor >= 0)
        ::close(m_descriptor);
}

KovInstanceLock::Result KovInstanceLock::tryLock()
{
    if (m_descriptor < 0) {
        QDir().mkpath(QFileInfo(m_path).path());
        m_descriptor = ::open(QFile::encodeName(m_path).constData(), O_RDWR | O_CREAT | O_CLOEXEC,
                              S_IRUSR | S_IWUSR);
    }
    if (m_descriptor >= 0 && ::flock(m_descriptor, LOCK_EX | LOCK_NB) == 0)
        return Result::Locked;
    if (errno == EWOULDBLOCK)
        return Result::HeldByAnother;
    m_error = QStringLiteral("cannot lock \"%1\": %2")
                  .arg(m_path, QString::fromLocal8Bit(std::strerror(errno)));
    return Result::Failed;
}
