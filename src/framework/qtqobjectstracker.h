#pragma once

#include <QHash>
#include <QMutex>
#include <QObject>

/**
 * Knows the long-lived objects of the process and logs, when it is destroyed, those that are still
 * alive: each of them is a leak or a wrong order of taking down.
 *
 * One per process, made first and destroyed last by main(). registerObject() may be called from any
 * thread.
 */
class QtQObjectsTracker : public QObject {
    Q_OBJECT
public:
    /// Null before main() has made one.
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
