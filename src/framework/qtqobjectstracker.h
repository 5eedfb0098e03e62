#pragma once

#include <QMutex>
#include <QObject>
#include <QPointer>

#include <vector>

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

    /// The name, as that of a meta-object, must live as long as the tracker.
    void registerObject(QObject *object, const char *className);
    /// The class names of the registered objects that still live, sorted.
    QStringList aliveObjects() const;

private:
    struct Registered {
        QPointer<QObject> object;
        const char *className = nullptr;
    };

    mutable QMutex m_mutex;
    std::vector<Registered> m_registered;
};
