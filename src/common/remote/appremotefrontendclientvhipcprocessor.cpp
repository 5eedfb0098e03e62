#include "appremotefrontendclientvhipcprocessor.h"

#include "qtobjectfactory.h"
#include "vhipcincomingdownloadsclient.h"
#include "vhipcjsonrequests.h"
#include "vhipckeys.h"
#include "vhipcmisctasksclient.h"
#include "vhipcsettings.h"

namespace {

/// The application's settings take precedence. Changes at either end are sent while the link is up,
/// but not a replacement of all values, which at this end only comes from the local store.
constexpr quint32 settingsFlags = VhIpcSettings::ApplyChanged | VhIpcSettings::ApplyAll
    | VhIpcSettings::ApplyReset | VhIpcSettings::SendChanged | VhIpcSettings::RequestAll;

} // namespace

AppRemoteFrontendClientVhIpcProcessor::AppRemoteFrontendClientVhIpcProcessor(
    const QSharedPointer<QtAppAbstractSettingsManager> &settingsManager,
    const QSharedPointer<RemoteIncomingDownloadsProcessor> &incomingDownloadsProcessor,
    const QSharedPointer<RemoteJsonRequestsManager> &jsonRequestsManager, QObject *parent,
    QtClock &clock)
    : QtVhIpcCompositePart({}, {}, parent),
      m_settingsPart(qtCreateObject<VhIpcSettings>(settingsManager, settingsFlags, QSet<QString>(),
                                                   nullptr, clock)),
      m_downloadsPart(
          qtCreateObject<VhIpcIncomingDownloadsClient>(incomingDownloadsProcessor, nullptr, clock)),
      m_jsonPart(qtCreateObject<VhIpcJsonRequests>(jsonRequestsManager, nullptr, clock))
{
    addPart(VhIpcSettings::partName(), m_settingsPart, false, false);
    addPart(VhIpcIncomingDownloadsClient::partName(), m_downloadsPart, false, false);
    addPart(VhIpcJsonRequests::partName(), m_jsonPart, false, false);
    addPart(VhIpcMiscTasksClient::partName(), qtCreateObject<VhIpcMiscTasksClient>(), false, false);
}

bool AppRemoteFrontendClientVhIpcProcessor::hasQueued() const
{
    return m_downloadsPart->hasQueued() || m_jsonPart->hasQueued();
}

QList<VhIpcQueuedMessage> AppRemoteFrontendClientVhIpcProcessor::queued() const
{
    return m_downloadsPart->queued() + m_jsonPart->queued();
}

void AppRemoteFrontendClientVhIpcProcessor::dropQueued()
{
    m_downloadsPart->dropQueued();
    m_jsonPart->dropQueued();
}

void AppRemoteFrontendClientVhIpcProcessor::dropQueuedEndingWithProcess()
{
    m_downloadsPart->dropQueuedEndingWithProcess();
    m_jsonPart->dropQueuedEndingWithProcess();
}

void AppRemoteFrontendClientVhIpcProcessor::sendOrQueue(const VhIpcQueuedMessage &queued)
{
    const auto to = part(queued.message.value(VhIpcKeys::name()).toString());
    if (auto *const queuedPart = qobject_cast<VhIpcQueuedPart *>(to.data()))
        queuedPart->sendOrQueue(queued);
}

bool AppRemoteFrontendClientVhIpcProcessor::awaitsAnswers() const
{
    return m_downloadsPart->awaitsAnswers();
}
