#include "qtabstractmodule.h"

QtAbstractModule::QtAbstractModule(QObject *parent) : QObject(parent) { }

void QtAbstractModule::setInitializeRunning(bool running, bool init)
{
    Pass &current = pass(init);
    if (running)
        current.failed = false;
    current.running = running;
    Q_EMIT initializeRunning(running, init);
}

void QtAbstractModule::setInitFailed(bool init) { pass(init).failed = true; }

void QtAbstractModule::setNeedExit() { m_needExit = true; }
