#include "readconsolethread.h"

#include "queuedcallsdispatcher.h"

ReadConsoleThread::ReadConsoleThread(QObject *parent) : QThread(parent)
{
    setEventDispatcher(new QueuedCallsDispatcher);
}

ReadConsoleThread::~ReadConsoleThread() { stop(); }

void ReadConsoleThread::stop(Reading reading)
{
    if (!isRunning())
        return;
    // The wake-up reaches the thread between two reads, terminate() inside one.
    {
        const std::lock_guard lock(m_stoppingMutex);
        m_stopping = true;
        if (QAbstractEventDispatcher *const dispatcher = eventDispatcher())
            dispatcher->wakeUp();
    }
    // Terminating the thread would load the stack unwinder's library.
    if (reading == Reading::MayBlock)
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
