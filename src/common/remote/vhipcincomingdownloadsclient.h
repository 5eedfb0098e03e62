#pragma once

#include "abstractnewdownloadsrequestjob.h"
#include "qtclock.h"
#include "vhipcqueuedpart.h"

#include <QSet>
#include <QSharedPointer>
#include <QString>

class RemoteIncomingDownloadsProcessor;

/**
 * The part "incomingDownloads" of the link: takes download jobs to the main application and brings
 * its answers back. Each job is sent at most once and finished exactly once:
 *
 * Jobs that are made while the link is down wait for it and are sent, in order, when it comes up;
 * when it has not come up 30 seconds after the last of them, all fail. A job that has waited for
 * longestWaitMs fails in any case: a little later the extension gives its download back to the
 * browser, and the file would be there twice. When the link goes down, the jobs that were sent and
 * not answered fail. Such failures have the text "Connection failure". An answer to a job that is
 * not waiting for one (it failed before) is ignored.
 */
class VhIpcIncomingDownloadsClient : public VhIpcQueuedPart {
    Q_OBJECT
public:
    /// The extension waits for 60 seconds (extension/lib/downloads.js).
    static constexpr int longestWaitMs = 55'000;

    explicit VhIpcIncomingDownloadsClient(
        const QSharedPointer<RemoteIncomingDownloadsProcessor> &processor,
        QObject *parent = nullptr, QtClock &clock = QtClock::system());

    /// The name that routes messages to this part.
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
