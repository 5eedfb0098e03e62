#pragma once

#include "qtclock.h"
#include "qtsingleshottimer.h"

#include <QObject>

#include <memory>

/// How much all transfers together may still read. What is not used of a moment is not saved up.
class KovSpeedLimit : public QObject {
    Q_OBJECT
public:
    explicit KovSpeedLimit(QtClock &clock = QtClock::system(), QObject *parent = nullptr);

    /// 0 for no limit.
    void setBytesPerSecond(qint64 limit);
    /// How much of so many bytes may be read now. When it is less, refilled() follows.
    qint64 take(qint64 wanted);
    /// Returns what was taken and not used.
    void giveBack(qint64 bytes) { m_left += bytes; }

Q_SIGNALS:
    void refilled();

private:
    void refill();

    static constexpr int momentMs = 50;

    const std::unique_ptr<QtSingleShotTimer> m_timer;
    qint64 m_bytesPerMoment = 0;
    qint64 m_left = 0;
};
