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

// A connection to QObject::destroyed() would take 300 bytes for each object.
void QtQObjectsTracker::registerObject(QObject *object, const char *className)
{
    const QMutexLocker locker(&m_mutex);
    if (m_registered.size() == m_registered.capacity())
        std::erase_if(m_registered, [](const Registered &each) { return each.object.isNull(); });
    m_registered.push_back({object, className});
}

QStringList QtQObjectsTracker::aliveObjects() const
{
    const QMutexLocker locker(&m_mutex);
    QStringList names;
    for (const Registered &each : m_registered) {
        if (each.object)
            names += QString::fromLatin1(each.className);
    }
    names.sort();
    return names;
}
