#include "readconsolethread.h"

ReadConsoleThread::ReadConsoleThread(QObject *parent) : QThread(parent) { }

ReadConsoleThread::~ReadConsoleThread() { stop(); }

void ReadConsoleThread::stop()
{
    // The one reaches it between two reads, the other inside of one.
    quit();
    terminate();
    wait();
}

void ReadConsoleThread::run()
{
    setTerminationEnabled(false);
    exec();
}
