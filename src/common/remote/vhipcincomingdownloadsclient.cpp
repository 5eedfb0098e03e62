#include "vhipcincomingdownloadsclient.h"

#include "remoteincomingdownloadsprocessor.h"
#include "vhipcincomingdownloadskeys.h"
#include "vhipckeys.h"

#include <QVariant>

#include <utility>

namespace {

namespace Keys = VhIpcIncomingDownloadsKeys;

constexpr int waitForConnectionMs = 30'000;

} // namespace

VhIpcIncomingDownloadsClient::VhIpcIncomingDownloadsClient(
    const QSharedPointer<RemoteIncomingDownloadsProcessor> &processor, QObject *parent,
    QtClock &clock)
    : QtAbstractVhIpcPart(parent), m_processor(processor),
      m_waitingConnectedTimer(clock.createTimer())
{
    connect(m_waitingConnectedTimer.get(), &QtSingleShotTimer::timeout, this,
            &VhIpcIncomingDownloadsClient::onWaitingConnectedTimedOut);
    connect(m_processor.data(), &RemoteIncomingDownloadsProcessor::sendJobToServer, this,
            &VhIpcIncomingDownloadsClient::sendJobToServer);
}

VhIpcIncomingDownloadsClient::~VhIpcIncomingDownloadsClient() = default;

QString VhIpcIncomingDownloadsClient::partName() { return Keys::partName(); }

void VhIpcIncomingDownloadsClient::sendJobToServer(const AbstractNewDownloadsRequestJob &job)
{
    if (!isConnected()) {
        m_waitingJobs.append(job);
        m_waitingConnectedTimer->start(waitForConnectionMs);
        setRequiringServer(true);
        return;
    }
    m_sentJobIds.insert(job.id);
    Q_EMIT sendVh({{VhIpcKeys::name(), partName()},
                   {VhIpcKeys::reason(), Keys::addReason()},
                   {VhIpcKeys::id(), job.id},
                   {Keys::request(), toVariantHash(job)}});
}

void VhIpcIncomingDownloadsClient::onConnectChanged(bool connected)
{
    if (connected == isConnected())
        return;
    QtAbstractVhIpcPart::onConnectChanged(connected);
    m_waitingConnectedTimer->stop();
    // Reentrancy: a slot may start the next job.
    if (connected) {
        const QList<AbstractNewDownloadsRequestJob> jobs = std::exchange(m_waitingJobs, {});
        setRequiringServer(false);
        for (const AbstractNewDownloadsRequestJob &job : jobs)
            sendJobToServer(job);
    } else {
        const QSet<qint64> ids = std::exchange(m_sentJobIds, {});
        for (const qint64 id : ids)
            failJob(id);
    }
}

void VhIpcIncomingDownloadsClient::onWaitingConnectedTimedOut()
{
    const QList<AbstractNewDownloadsRequestJob> jobs = std::exchange(m_waitingJobs, {});
    setRequiringServer(false);
    for (const AbstractNewDownloadsRequestJob &job : jobs)
        failJob(job.id);
}

void VhIpcIncomingDownloadsClient::processVh(const QHash<QString, QVariant> &map)
{
    if (map.value(VhIpcKeys::reason()).toString() != Keys::finishedReason())
        return;
    const qint64 id = map.value(VhIpcKeys::id()).toLongLong();
    if (!m_sentJobIds.remove(id))
        return;
    const auto reason =
        static_cast<AbstractDownloadAbortReason>(map.value(Keys::abortReason()).toInt());
    m_processor->onJobFinished(
        id, map.value(Keys::added()).toBool(), map.value(Keys::aborted()).toBool(), reason,
        map.value(Keys::error()).toString(), map.value(Keys::isSilent()).toBool());
}

void VhIpcIncomingDownloadsClient::failJob(qint64 id)
{
    //: The link to the download manager broke or could not be made
    m_processor->onJobFinished(id, false, false, AbstractDownloadAbortReason::None,
                               tr("Connection failure"), false);
}
