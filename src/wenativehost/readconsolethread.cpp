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
    bool endsByItself = false;
    // The wake-up reaches the thread between two reads, terminate() inside one.
    {
        const std::lock_guard lock(m_stoppingMutex);
        endsByItself = std::exchange(m_stopping, true);
        QAbstractEventDispatcher *const dispatcher = endsByItself ? nullptr : eventDispatcher();
        if (dispatcher)
            dispatcher->wakeUp();
    }
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
