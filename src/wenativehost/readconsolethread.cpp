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
    // To be terminated costs the loading of what unwinds the thread's stack.
    if (reading == Reading::MayBlock)
        terminate();
    wait();
}

void ReadConsoleThread::run()
{
    setTerminationEnabled(false);
    // An event loop object would complain when the thread is cut off inside of it.
    while (!isStopping())
        eventDispatcher()->processEvents(QEventLoop::WaitForMoreEvents);
}

bool ReadConsoleThread::isStopping()
{
    const std::lock_guard lock(m_stoppingMutex);
    return m_stopping;
}
