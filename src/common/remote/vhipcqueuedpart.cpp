#include "vhipcqueuedpart.h"

#include "qtappdefaultlogger.h"
#include "vhipckeys.h"

#include <algorithm>
#include <utility>

namespace {

void logGivenUp(const QHash<QString, QVariant> &message, const QString &reason)
{
    logLine(1,
            QStringLiteral("[VhIpcQueuedPart]: WARNING: message %1 of \"%2\" is given up: %3")
                .arg(message.value(VhIpcKeys::id()).toString(),
                     message.value(VhIpcKeys::name()).toString(), reason));
}

} // namespace

VhIpcQueuedPart::VhIpcQueuedPart(int maxWaitMs, QObject *parent, QtClock &clock)
    : QtAbstractVhIpcPart(parent), m_maxWaitMs(maxWaitMs), m_clock(clock),
      m_timer(clock.createTimer())
{
    connect(m_timer.get(), &QtSingleShotTimer::timeout, this, &VhIpcQueuedPart::onTimeout);
}

void VhIpcQueuedPart::sendOrQueue(const VhIpcQueuedMessage &queued)
{
    if (isConnected()) {
        sendNow(queued.message);
        return;
    }
    m_lastQueuedMs = m_clock.monotonicMs() - queued.waitedMs;
    m_queue.append({queued.message, m_lastQueuedMs, queued.endsWithProcess});
    startTimer();
    setRequiringServer(true);
}

QList<VhIpcQueuedMessage> VhIpcQueuedPart::queued() const
{
    const qint64 nowMs = m_clock.monotonicMs();
    QList<VhIpcQueuedMessage> messages;
    messages.reserve(m_queue.size());
    for (const Entry &entry : m_queue)
        messages.append({entry.message, nowMs - entry.sinceMs, entry.endsWithProcess});
    return messages;
}

void VhIpcQueuedPart::dropQueued()
{
    m_queue.clear();
    onQueueShortened();
}

void VhIpcQueuedPart::dropQueuedEndingWithProcess()
{
    m_queue.removeIf([](const Entry &entry) {
        if (entry.endsWithProcess)
            logGivenUp(entry.message, QStringLiteral("the host ends, and the browser has it"));
        return entry.endsWithProcess;
    });
    onQueueShortened();
}

void VhIpcQueuedPart::onQueueShortened()
{
    if (m_queue.isEmpty()) {
        m_timer->stop();
        setRequiringServer(false);
    } else {
        startTimer();
    }
}

void VhIpcQueuedPart::onConnectChanged(bool connected)
{
    QtAbstractVhIpcPart::onConnectChanged(connected);
    if (!connected)
        return;
    m_timer->stop();
    const qint64 nowMs = m_clock.monotonicMs();
    const QList<Entry> queue = std::exchange(m_queue, {});
    setRequiringServer(false);
    for (const Entry &entry : queue) {
        // The timer may be late, for example after a suspend.
        if (hasWaitedTooLong(entry, nowMs))
            expire(entry.message);
        else
            sendNow(entry.message);
    }
}

void VhIpcQueuedPart::onSending(const QHash<QString, QVariant> &) { }

void VhIpcQueuedPart::sendNow(const QHash<QString, QVariant> &message)
{
    onSending(message);
    Q_EMIT sendVh(message);
}

void VhIpcQueuedPart::startTimer()
{
    m_dueMs = std::min(m_lastQueuedMs + waitForConnectionMs, m_queue.front().sinceMs + m_maxWaitMs);
    m_timer->start(static_cast<int>(std::max<qint64>(m_dueMs - m_clock.monotonicMs(), 0)));
}

void VhIpcQueuedPart::onTimeout()
{
    const qint64 nowMs = std::max(m_clock.monotonicMs(), m_dueMs);
    const bool allExpire = nowMs - m_lastQueuedMs >= waitForConnectionMs;
    QList<Entry> expired;
    while (!m_queue.isEmpty() && (allExpire || hasWaitedTooLong(m_queue.front(), nowMs)))
        expired.append(m_queue.takeFirst());
    onQueueShortened();
    // Reentrancy: a slot may send the next message, which starts a new wait.
    for (const Entry &entry : std::as_const(expired))
        expire(entry.message);
}

void VhIpcQueuedPart::expire(const QHash<QString, QVariant> &message)
{
    logGivenUp(message, QStringLiteral("the application did not come up in time"));
    onExpired(message);
}

bool VhIpcQueuedPart::hasWaitedTooLong(const Entry &entry, qint64 nowMs) const
{
    return nowMs - entry.sinceMs >= m_maxWaitMs;
}
