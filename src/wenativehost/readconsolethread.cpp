#include "readconsolethread.h"

#include "queuedcallsdispatcher.h"

ReadConsoleThread::ReadConsoleThread(QObject *parent) : QThread(parent)
{
    setEventDispatcher(new QueuedCallsDispatcher);
}

ReadConsoleThread::~ReadConsoleThread() { stop(); }

void ReadConsoleThread::stop()
{
    m_stopping = true;
    // The one reaches it between two reads, the other inside of one.
    if (QAbstractEventDispatcher *const dispatcher = eventDispatcher())
        dispatcher->wakeUp();
    terminate();
    wait();
}

void ReadConsoleThread::run()
{
    setTerminationEnabled(false);
    // An event loop object would complain when the thread is cut off inside of it.
    while (!m_stopping)
        eventDispatcher()->processEvents(QEventLoop::WaitForMoreEvents);
}
