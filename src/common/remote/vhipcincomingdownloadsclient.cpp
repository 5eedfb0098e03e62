#include "vhipcincomingdownloadsclient.h"

#include "qtappdefaultlogger.h"
#include "remoteincomingdownloadsprocessor.h"
#include "vhipcincomingdownloadskeys.h"
#include "vhipckeys.h"

#include <QVariant>

#include <utility>

namespace {

namespace Keys = VhIpcIncomingDownloadsKeys;

} // namespace

VhIpcIncomingDownloadsClient::VhIpcIncomingDownloadsClient(
    const QSharedPointer<RemoteIncomingDownloadsProcessor> &processor, QObject *parent,
    QtClock &clock)
    : VhIpcQueuedPart(maxWaitMs, parent, clock), m_processor(processor)
{
    connect(m_processor.data(), &RemoteIncomingDownloadsProcessor::sendJobToServer, this,
            &VhIpcIncomingDownloadsClient::sendJobToServer);
}

QString VhIpcIncomingDownloadsClient::partName() { return Keys::partName(); }

void VhIpcIncomingDownloadsClient::sendJobToServer(const AbstractNewDownloadsRequestJob &job)
{
    sendOrQueue({.message = {{VhIpcKeys::name(), partName()},
                             {VhIpcKeys::reason(), Keys::addReason()},
                             {VhIpcKeys::id(), job.id},
                             {Keys::request(),
                              isConnected() && maySendEncoded() ? toEncodedVariantHash(job)
                                                                : toVariantHash(job)}},
                 .endsWithProcess = job.isBrowsersOwn});
}

void VhIpcIncomingDownloadsClient::onSending(const QHash<QString, QVariant> &message)
{
    m_sentJobIds.insert(message.value(VhIpcKeys::id()).toLongLong());
}

void VhIpcIncomingDownloadsClient::onExpired(const QHash<QString, QVariant> &message)
{
    failJob(message.value(VhIpcKeys::id()).toLongLong());
}

void VhIpcIncomingDownloadsClient::onConnectChanged(bool connected)
{
    if (connected == isConnected())
        return;
    VhIpcQueuedPart::onConnectChanged(connected);
    if (connected)
        return;
    // Reentrancy: a slot may start the next job.
    const QSet<qint64> ids = std::exchange(m_sentJobIds, {});
    for (const qint64 id : ids) {
        logLine(1,
                QStringLiteral("[VhIpcIncomingDownloadsClient]: WARNING: job %1 fails: the "
                               "connection ended before it was answered")
                    .arg(id));
        failJob(id);
    }
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
