#pragma once

#include <QObject>

/// A timer that fires once. Made by a QtClock, whose time it follows. Belongs to one thread.
class QtSingleShotTimer : public QObject {
    Q_OBJECT
public:
    explicit QtSingleShotTimer(QObject *parent = nullptr) : QObject(parent) { }

    /// Fires "msec" milliseconds (at least 0) from now, with the next turn of the event loop at the
    /// earliest. An active timer starts over.
    virtual void start(int msec, Qt::TimerType type = Qt::CoarseTimer) = 0;
    /// Nothing when the timer is not active.
    virtual void stop() = 0;
    /// True from start() until timeout() or stop(); false already while timeout() is emitted.
    virtual bool isActive() const = 0;

Q_SIGNALS:
    void timeout();
};
