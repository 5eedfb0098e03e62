#include "appremotefrontendclientvhipcprocessor.h"

#include "qtobjectfactory.h"
#include "vhipcincomingdownloadsclient.h"
#include "vhipcjsonrequests.h"
#include "vhipcmisctasksclient.h"
#include "vhipcsettings.h"

namespace {

/// The application's settings count. What changes there or here while the link is up is told, but
/// not a replacement of everything, which here only comes from the local store.
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
      m_miscTasksPart(qtCreateObject<VhIpcMiscTasksClient>())
{
    addPart(VhIpcSettings::partName(), m_settingsPart, false, false);
    addPart(
        VhIpcIncomingDownloadsClient::partName(),
        qtCreateObject<VhIpcIncomingDownloadsClient>(incomingDownloadsProcessor, nullptr, clock),
        false, false);
    addPart(VhIpcJsonRequests::partName(),
            qtCreateObject<VhIpcJsonRequests>(jsonRequestsManager, nullptr, clock), false, false);
    addPart(VhIpcMiscTasksClient::partName(), m_miscTasksPart, false, false);
}

AppRemoteFrontendClientVhIpcProcessor::~AppRemoteFrontendClientVhIpcProcessor() = default;
