#include "readconsolethread.h"

#include "queuedcallsdispatcher.h"

#include <QDeadlineTimer>

#include <chrono>

namespace {

/// Long enough for what a message costs, short enough for a browser that waits for the end.
constexpr std::chrono::seconds patience(2);

} // namespace

ReadConsoleThread::ReadConsoleThread(QObject *parent) : QThread(parent)
{
    setEventDispatcher(new QueuedCallsDispatcher);
}

ReadConsoleThread::~ReadConsoleThread() { stop(); }

void ReadConsoleThread::stop()
{
    {
        const std::lock_guard lock(m_mutex);
        m_stopping = true;
        if (m_hasDispatcher)
            eventDispatcher()->wakeUp();
    }
    if (wait(QDeadlineTimer(patience)))
        return;
    // It is stuck in a read after all: somebody else took the input that was there.
    terminate();
    wait();
    const std::lock_guard lock(m_mutex);
    m_hasDispatcher = false;
}

void ReadConsoleThread::run()
{
    // It may be cut off only where its input says so. Anywhere else it might hold a lock of an
    // event queue, for which those who outlive it would wait in vain.
    setTerminationEnabled(false);
    {
        const std::lock_guard lock(m_mutex);
        m_hasDispatcher = true;
    }
    while (!isStopping())
        eventDispatcher()->processEvents(QEventLoop::WaitForMoreEvents);
    // Afterwards the dispatcher goes.
    const std::lock_guard lock(m_mutex);
    m_hasDispatcher = false;
}

bool ReadConsoleThread::isStopping()
{
    const std::lock_guard lock(m_mutex);
    return m_stopping;
}
