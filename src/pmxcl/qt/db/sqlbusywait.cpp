#include "sqlbusywait.h"

#include "enddeadline.h"

#include <QMutex>
#include <QMutexLocker>
#include <QSet>
#include <QThread>

#include <utility>

namespace {

struct HeldFiles {
    QMutex mutex;
    QSet<QString> paths;
};

HeldFiles &heldFiles()
{
    static HeldFiles files;
    return files;
}

bool isHeld(const QString &filePath)
{
    HeldFiles &held = heldFiles();
    const QMutexLocker locker(&held.mutex);
    return held.paths.contains(filePath);
}

void setHeld(const QString &filePath, bool isHeld)
{
    HeldFiles &held = heldFiles();
    const QMutexLocker locker(&held.mutex);
    if (isHeld)
        held.paths.insert(filePath);
    else
        held.paths.remove(filePath);
}

SqlBusyWait *&outermostWait()
{
    thread_local SqlBusyWait *wait = nullptr;
    return wait;
}

} // namespace

bool isBusyError(const QSqlError &error)
{
    if (!error.isValid())
        return false;
    // SQLITE_BUSY and its extended codes (the lowest byte), except SQLITE_BUSY_SNAPSHOT, which
    // persists until the transaction ends
    // (https://sqlite.org/rescode.html).
    const int busy = 5;
    const int busySnapshot = 517;
    const int code = error.nativeErrorCode().toInt();
    return (code & 0xff) == busy && code != busySnapshot;
}

SqlBusyWait::SqlBusyWait(QString filePath)
    : m_filePath(std::move(filePath)), m_outermost(outermostWait() ? *outermostWait() : *this)
{
    if (&m_outermost == this)
        outermostWait() = this;
}

SqlBusyWait::~SqlBusyWait()
{
    if (&m_outermost != this)
        return;
    outermostWait() = nullptr;
    if (!m_filePath.isEmpty() && (m_timedOut || m_succeeded))
        setHeld(m_filePath, m_timedOut);
}

bool SqlBusyWait::pause()
{
    // Begins with the first step that has to wait.
    if (m_deadline.isForever()) {
        const bool known = !m_filePath.isEmpty() && isHeld(m_filePath);
        m_deadline.setRemainingTime(known ? std::chrono::milliseconds(0)
                                          : EndDeadline::limited(sqlBusyWaitTime));
    }
    if (m_deadline.hasExpired())
        return false;
    QThread::msleep(1);
    return true;
}

void SqlBusyWait::note(const QSqlError &error)
{
    m_timedOut = m_timedOut || isBusyError(error);
    m_succeeded = m_succeeded || !error.isValid();
}
