#include "kovspeedlimit.h"

#include "kovunits.h"

#include <algorithm>

KovSpeedLimit::KovSpeedLimit(QtClock &clock, QObject *parent)
    : QObject(parent), m_timer(clock.createTimer())
{
    connect(m_timer.get(), &QtSingleShotTimer::timeout, this, &KovSpeedLimit::refill);
}

void KovSpeedLimit::setBytesPerSecond(qint64 limit)
{
    const qint64 perMoment =
        limit > 0 ? std::max<qint64>(1, limit * momentMs / millisecondsPerSecond) : 0;
    if (perMoment == m_bytesPerMoment)
        return;
    m_bytesPerMoment = perMoment;
    refill();
}

qint64 KovSpeedLimit::take(qint64 wanted)
{
    if (m_bytesPerMoment == 0)
        return wanted;
    const qint64 taken = std::clamp<qint64>(wanted, 0, std::max<qint64>(0, m_left));
    m_left -= taken;
    if (taken < wanted && !m_timer->isActive())
        m_timer->start(momentMs, Qt::PreciseTimer);
    return taken;
}

void KovSpeedLimit::refill()
{
    m_left = m_bytesPerMoment;
    Q_EMIT refilled();
}
