#pragma once

#include <QObject>

/// A timer that fires once. Created by a QtClock, whose time it uses. Belongs to one thread.
class QtSingleShotTimer : public QObject {
    Q_OBJECT
public:
    explicit QtSingleShotTimer(QObject *parent = nullptr) : QObject(parent) { }

    /// Fires in "msec" milliseconds (at least 0), at the earliest from the next iteration of the
    /// event loop. An active timer is restarted.
    virtual void start(int msec, Qt::TimerType type = Qt::CoarseTimer) = 0;
    /// Does nothing if the timer is not active.
    virtual void stop() = 0;
    /// True from start() until timeout() or stop(); false already while timeout() is emitted.
    virtual bool isActive() const = 0;

Q_SIGNALS:
    void timeout();
};
