#pragma once

#include "abstractnewdownloadsrequestjob.h"
#include "qtclock.h"
#include "vhipcqueuedpart.h"

#include <QSet>
#include <QSharedPointer>
#include <QString>

class RemoteIncomingDownloadsProcessor;

/**
 * The part "incomingDownloads" of the link: sends download jobs to the main application and
 * receives its answers. Each job is sent at most once and finished exactly once:
 *
 * Jobs that are created while the link is down are queued, and sent, in order, when it comes up; if
 * it does not come up within 30 seconds after the last of them, all fail. A job that has waited for
 * maxWaitMs fails in any case: soon after, the extension resumes the download in the browser,
 * and there would be two copies. When the link goes down, the jobs that were sent but not answered
 * fail. Such failures have the text "Connection failure". An answer to a job that is no longer
 * pending (it failed before) is ignored.
 */
class VhIpcIncomingDownloadsClient : public VhIpcQueuedPart {
    Q_OBJECT
public:
    /// Below the time that the extension waits, applicationTimeoutMs in
    /// extension/lib/nativehost.js.
    static constexpr int maxWaitMs = 55'000;

    explicit VhIpcIncomingDownloadsClient(
        const QSharedPointer<RemoteIncomingDownloadsProcessor> &processor,
        QObject *parent = nullptr, QtClock &clock = QtClock::system());

    /// The name under which messages are dispatched to this part.
    static QString partName();

    void processVh(const QHash<QString, QVariant> &map) override;
    void onConnectChanged(bool connected) override;
    /// Whether jobs that were sent have not been answered yet.
    bool awaitsAnswers() const { return !m_sentJobIds.isEmpty(); }

public Q_SLOTS:
    void sendJobToServer(const AbstractNewDownloadsRequestJob &job);

private:
    void onSending(const QHash<QString, QVariant> &message) override;
    void onExpired(const QHash<QString, QVariant> &message) override;
    void failJob(qint64 id);

    const QSharedPointer<RemoteIncomingDownloadsProcessor> m_processor;
    QSet<qint64> m_sentJobIds;
};
