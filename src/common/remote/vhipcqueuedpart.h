#pragma once

#include "qtabstractvhipcpart.h"
#include "qtclock.h"
#include "qtsingleshottimer.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QVariant>

#include <limits>
#include <memory>

/// A message to the application that waits for the link.
struct VhIpcQueuedMessage {
    QHash<QString, QVariant> message;
    /// How long it has waited so far, in milliseconds.
    qint64 waitedMs = 0;
    /// Not delivered after the end of this process, as the browser keeps the download.
    bool endsWithProcess = false;
};

/**
 * A part of the link whose messages are queued while the link is down, and meanwhile require the
 * application to run. They are sent once, in order, when the link comes up. If it does not come up
 * within 30 seconds after the last of them, all expire; in any case each of them expires after the
 * part's own limit, however often newer messages have prolonged the wait.
 */
class VhIpcQueuedPart : public QtAbstractVhIpcPart {
    Q_OBJECT
public:
    static constexpr int waitForConnectionMs = 30'000;

    void onConnectChanged(bool connected) override;

    /// Sends the message now, or when the link is up. Messages that have already waited elsewhere
    /// must be added oldest first.
    void sendOrQueue(const VhIpcQueuedMessage &queued);
    bool hasQueued() const { return !m_queue.isEmpty(); }
    /// The queued messages, in order.
    QList<VhIpcQueuedMessage> queued() const;
    /// Drops the queued messages, all or those that end with the process, without a notification.
    void dropQueued();
    void dropQueuedEndingWithProcess();

protected:
    static constexpr int noLimitMs = std::numeric_limits<int>::max();

    VhIpcQueuedPart(int maxWaitMs, QObject *parent, QtClock &clock);

    /// The message is about to be sent.
    virtual void onSending(const QHash<QString, QVariant> &message);
    /// The message was not sent, and will not be. An override may send it again; then it waits
    /// again.
    virtual void onExpired(const QHash<QString, QVariant> &message) = 0;

private:
    struct Entry {
        QHash<QString, QVariant> message;
        /// On the clock's monotonic time.
        qint64 sinceMs = 0;
        bool endsWithProcess = false;
    };

    void sendNow(const QHash<QString, QVariant> &message);
    void expire(const QHash<QString, QVariant> &message);
    void startTimer();
    void onQueueShortened();
    void onTimeout();
    bool hasWaitedTooLong(const Entry &entry, qint64 nowMs) const;

    const int m_maxWaitMs;
    QtClock &m_clock;
    QList<Entry> m_queue;
    qint64 m_lastQueuedMs = 0;
    /// When the timer is due. It may fire slightly earlier.
    qint64 m_dueMs = 0;
    const std::unique_ptr<QtSingleShotTimer> m_timer;
};
