#pragma once

#include "abstractnewdownloadsrequestjob.h"
#include "qtabstractvhipcpart.h"
#include "qtclock.h"
#include "qtsingleshottimer.h"

#include <QList>
#include <QSet>
#include <QSharedPointer>
#include <QString>

#include <memory>

class RemoteIncomingDownloadsProcessor;

/**
 * The part "incomingDownloads" of the link: takes download jobs to the main application and brings
 * its answers back. Each job is sent at most once and finished exactly once:
 *
 * Jobs that are made while the link is down wait for it and are sent, in order, when it comes up;
 * when it has not come up 30 seconds after the last of them, all fail. When the link goes down, the
 * jobs that were sent and not answered fail. Such failures have the text "Connection failure". An
 * answer to a job that is not waiting for one (it failed before) is ignored.
 */
class VhIpcIncomingDownloadsClient : public QtAbstractVhIpcPart {
    Q_OBJECT
public:
    explicit VhIpcIncomingDownloadsClient(
        const QSharedPointer<RemoteIncomingDownloadsProcessor> &processor,
        QObject *parent = nullptr, QtClock &clock = QtClock::system());
    ~VhIpcIncomingDownloadsClient() override;

    /// The name that routes messages to this part.
    static QString partName();

    void processVh(const QHash<QString, QVariant> &map) override;
    void onConnectChanged(bool connected) override;

public Q_SLOTS:
    void sendJobToServer(const AbstractNewDownloadsRequestJob &job);

private Q_SLOTS:
    void onWaitingConnectedTimedOut();

private:
    void failJob(qint64 id);

    const QSharedPointer<RemoteIncomingDownloadsProcessor> m_processor;
    QList<AbstractNewDownloadsRequestJob> m_waitingJobs;
    QSet<qint64> m_sentJobIds;
    const std::unique_ptr<QtSingleShotTimer> m_waitingConnectedTimer;
};
