#include "queuedcallsdispatcher.h"

#include "assertionlog.h"

#include <QCoreApplication>

QueuedCallsDispatcher::QueuedCallsDispatcher(QObject *parent) : QAbstractEventDispatcher(parent) { }

bool QueuedCallsDispatcher::processEvents(QEventLoop::ProcessEventsFlags flags)
{
    // Waiting comes first, so that a wake-up between a caller's check and this call is not lost:
    // the caller checks again.
    if (flags & QEventLoop::WaitForMoreEvents)
        m_wokenUp.wait(0);
    const bool wokenUp = m_wokenUp.exchange(0) != 0;
    QCoreApplication::sendPostedEvents();
    return wokenUp;
}

void QueuedCallsDispatcher::wakeUp()
{
    m_wokenUp.store(1);
    m_wokenUp.notify_one();
}

void QueuedCallsDispatcher::interrupt() { wakeUp(); }

void QueuedCallsDispatcher::registerSocketNotifier(QSocketNotifier *)
{
    checkOrLog(false, "no sockets in this thread");
}

void QueuedCallsDispatcher::unregisterSocketNotifier(QSocketNotifier *) { }

void QueuedCallsDispatcher::registerTimer(int, qint64, Qt::TimerType, QObject *)
{
    checkOrLog(false, "no timers in this thread");
}

bool QueuedCallsDispatcher::unregisterTimer(int) { return false; }

bool QueuedCallsDispatcher::unregisterTimers(QObject *) { return false; }

QList<QAbstractEventDispatcher::TimerInfo> QueuedCallsDispatcher::registeredTimers(QObject *) const
{
    return {};
}

int QueuedCallsDispatcher::remainingTime(int) { return -1; }
