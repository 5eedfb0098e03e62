#pragma once

#include "qtclock.h"
#include "qtsingleshottimer.h"

#include <QObject>

#include <memory>

/// A speed limit for all transfers together, a token bucket without burst.
class KovSpeedLimit : public QObject {
    Q_OBJECT
public:
    explicit KovSpeedLimit(QtClock &clock = QtClock::system(), QObject *parent = nullptr);

    /// 0 for no limit.
    void setBytesPerSecond(qint64 limit);
    /// Takes up to so many bytes; returns how many may be read now. If fewer, refilled() follows.
    qint64 take(qint64 wanted);
    /// Returns bytes that were taken but not used.
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
