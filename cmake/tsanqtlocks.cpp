// Lets the thread sanitizer see two of Qt's locks, and the end of a thread. Qt is not built with
// the sanitizer, and annotates only QMutex, in a header. The linker redirects our calls here
// (--wrap), and from here to Qt.

#include <QMutex>
#include <QReadWriteLock>
#include <QThread>

#include <sanitizer/tsan_interface.h>

#define WRAPPED(symbol) __asm__("__wrap_" symbol)
#define ORIGINAL(symbol) __asm__("__real_" symbol)

#define LOCK_FOR_READ "_ZN14QReadWriteLock11lockForReadEv"
#define LOCK_FOR_WRITE "_ZN14QReadWriteLock12lockForWriteEv"
#define UNLOCK "_ZN14QReadWriteLock6unlockEv"
#define TRY_LOCK_RECURSIVE "_ZN15QRecursiveMutex7tryLockEi"
#define UNLOCK_RECURSIVE "_ZN15QRecursiveMutex6unlockEv"
#define WAIT_FOR_THREAD "_ZN7QThread4waitE14QDeadlineTimer"
#define ENABLE_TERMINATION "_ZN7QThread21setTerminationEnabledEb"

void qtLockForRead(QReadWriteLock *lock) ORIGINAL(LOCK_FOR_READ);
void qtLockForWrite(QReadWriteLock *lock) ORIGINAL(LOCK_FOR_WRITE);
void qtUnlock(QReadWriteLock *lock) ORIGINAL(UNLOCK);
bool qtTryLock(QRecursiveMutex *mutex, int timeout) ORIGINAL(TRY_LOCK_RECURSIVE);
void qtUnlock(QRecursiveMutex *mutex) ORIGINAL(UNLOCK_RECURSIVE);
bool qtWait(QThread *thread, QDeadlineTimer deadline) ORIGINAL(WAIT_FOR_THREAD);
void qtSetTerminationEnabled(bool enabled) ORIGINAL(ENABLE_TERMINATION);

void lockForRead(QReadWriteLock *lock) WRAPPED(LOCK_FOR_READ);
void lockForWrite(QReadWriteLock *lock) WRAPPED(LOCK_FOR_WRITE);
void unlock(QReadWriteLock *lock) WRAPPED(UNLOCK);
bool tryLock(QRecursiveMutex *mutex, int timeout) WRAPPED(TRY_LOCK_RECURSIVE);
void unlock(QRecursiveMutex *mutex) WRAPPED(UNLOCK_RECURSIVE);
bool wait(QThread *thread, QDeadlineTimer deadline) WRAPPED(WAIT_FOR_THREAD);
void setTerminationEnabled(bool enabled) WRAPPED(ENABLE_TERMINATION);

void lockForRead(QReadWriteLock *lock)
{
    qtLockForRead(lock);
    __tsan_acquire(lock);
}

void lockForWrite(QReadWriteLock *lock)
{
    qtLockForWrite(lock);
    __tsan_acquire(lock);
}

void unlock(QReadWriteLock *lock)
{
    __tsan_release(lock);
    qtUnlock(lock);
}

bool tryLock(QRecursiveMutex *mutex, int timeout)
{
    const bool locked = qtTryLock(mutex, timeout);
    if (locked)
        __tsan_acquire(mutex);
    return locked;
}

void unlock(QRecursiveMutex *mutex)
{
    __tsan_release(mutex);
    qtUnlock(mutex);
}

bool wait(QThread *thread, QDeadlineTimer deadline)
{
    const bool ended = qtWait(thread, deadline);
    if (ended)
        __tsan_acquire(thread);
    return ended;
}

// From here on the thread may be terminated: everything before happens before the end of a wait().
void setTerminationEnabled(bool enabled)
{
    if (enabled)
        __tsan_release(QThread::currentThread());
    qtSetTerminationEnabled(enabled);
}
