#pragma once

#include <QHash>
#include <QMutex>
#include <QObject>

/**
 * Tracks the long-lived objects of the process. When it is destroyed, it logs those that are still
 * alive: each of them is a leak or was taken down in the wrong order.
 *
 * One per process, created first and destroyed last by main(). registerObject() may be called from
 * any thread.
 */
class QtQObjectsTracker : public QObject {
    Q_OBJECT
public:
    /// Null until main() has created it.
    static QtQObjectsTracker *instance();

    explicit QtQObjectsTracker(QObject *parent = nullptr);
    ~QtQObjectsTracker() override;

    void registerObject(QObject *object, const char *className);
    /// The class names of the registered objects that still live, sorted.
    QStringList aliveObjects() const;

private:
    void forgetObject(const QObject *object);

    mutable QMutex m_mutex;
    QHash<const QObject *, QString> m_alive;
};
