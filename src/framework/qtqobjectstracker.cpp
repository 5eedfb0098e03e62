#include "qtqobjectstracker.h"

#include "qtappdefaultlogger.h"

#include <QMutexLocker>

#include <atomic>

namespace {
std::atomic<QtQObjectsTracker *> trackerInstance = nullptr;
}

QtQObjectsTracker *QtQObjectsTracker::instance() { return trackerInstance.load(); }

QtQObjectsTracker::QtQObjectsTracker(QObject *parent) : QObject(parent)
{
    trackerInstance.store(this);
}

QtQObjectsTracker::~QtQObjectsTracker()
{
    QtQObjectsTracker *self = this;
    trackerInstance.compare_exchange_strong(self, nullptr);
    for (const QString &className : aliveObjects())
        logLine(
            1,
            QStringLiteral("[QtQObjectsTracker]: WARNING: still alive at exit: %1").arg(className));
}

void QtQObjectsTracker::registerObject(QObject *object, const char *className)
{
    {
        const QMutexLocker locker(&m_mutex);
        m_alive.insert(object, QString::fromLatin1(className));
    }
    // Direct: objects die on their own threads, and the entry must be gone before the address is
    // used again.
    connect(object, &QObject::destroyed, this, &QtQObjectsTracker::forgetObject,
            Qt::DirectConnection);
}

void QtQObjectsTracker::forgetObject(const QObject *object)
{
    const QMutexLocker locker(&m_mutex);
    m_alive.remove(object);
}

QStringList QtQObjectsTracker::aliveObjects() const
{
    const QMutexLocker locker(&m_mutex);
    QStringList names = m_alive.values();
    names.sort();
    return names;
}
