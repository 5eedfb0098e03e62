#include "readconsolethread.h"

#include "queuedcallsdispatcher.h"

#include <utility>

ReadConsoleThread::ReadConsoleThread(QObject *parent) : QThread(parent)
{
    setEventDispatcher(new QueuedCallsDispatcher);
}

ReadConsoleThread::~ReadConsoleThread() { stop(); }

void ReadConsoleThread::endByItself()
{
    const std::lock_guard lock(m_stoppingMutex);
    m_stopping = true;
}

void ReadConsoleThread::stop()
{
    if (!isRunning())
        return;
    // The wake-up reaches the thread between two reads, terminate() inside one.
    std::unique_lock lock(m_stoppingMutex);
    const bool endsByItself = std::exchange(m_stopping, true);
    QAbstractEventDispatcher *const dispatcher = endsByItself ? nullptr : eventDispatcher();
    if (dispatcher)
        dispatcher->wakeUp();
    lock.unlock();
    // Terminating the thread would load the stack unwinder's library.
    if (!endsByItself)
        terminate();
    wait();
}

void ReadConsoleThread::run()
{
    setTerminationEnabled(false);
    // QEventLoop would warn when the thread is terminated inside it.
    while (!isStopping())
        eventDispatcher()->processEvents(QEventLoop::WaitForMoreEvents);
}

bool ReadConsoleThread::isStopping()
{
    const std::lock_guard lock(m_stoppingMutex);
    return m_stopping;
}
