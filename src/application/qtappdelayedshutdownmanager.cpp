#include "qtappdelayedshutdownmanager.h"

#include <QCoreApplication>

QtAppDelayedShutdownManager::QtAppDelayedShutdownManager(QObject *parent) : QObject(parent)
{
    QMetaObject::invokeMethod(this, &QtAppDelayedShutdownManager::onEventLoopStarted,
                              Qt::QueuedConnection);
}

void QtAppDelayedShutdownManager::registerObject(QObject *object, bool hold)
{
    if (!object)
        return;
    if (hold) {
        if (m_registeredObjects.contains(object))
            return;
        m_registeredObjects.insert(object);
        connect(object, &QObject::destroyed, this, &QtAppDelayedShutdownManager::onObjectDestroyed);
        return;
    }
    disconnect(object, nullptr, this, nullptr);
    m_registeredObjects.remove(object);
    if (m_shutdownRequested)
        tryCallQuit();
}

void QtAppDelayedShutdownManager::shutdownAppQueued(const QString &reason)
{
    QMetaObject::invokeMethod(
        this, [this, reason] { shutdownApp(reason); }, Qt::QueuedConnection);
}

void QtAppDelayedShutdownManager::shutdownApp(const QString &reason)
{
    if (m_shutdownRequested)
        return;
    m_shutdownRequested = true;
    m_shutdownReason = reason;
    Q_EMIT shutdownRequested();
    tryCallQuit();
}

void QtAppDelayedShutdownManager::shutdownAppViaConnection()
{
    const QObject *const from = sender();
    shutdownApp(from ? from->objectName() : QString());
}

void QtAppDelayedShutdownManager::onEventLoopStarted()
{
    m_eventLoopStarted = true;
    if (m_shutdownRequested)
        tryCallQuit();
}

void QtAppDelayedShutdownManager::onObjectDestroyed(QObject *object)
{
    if (m_registeredObjects.contains(object))
        registerObject(object, false);
}

void QtAppDelayedShutdownManager::tryCallQuit()
{
    if (m_quitCalled || !m_registeredObjects.isEmpty() || !m_eventLoopStarted)
        return;
    m_quitCalled = true;
    Q_EMIT readyToQuit();
    QCoreApplication::quit();
}
