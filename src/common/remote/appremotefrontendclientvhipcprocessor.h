#pragma once

#include "qtclock.h"
#include "qtvhipccompositepart.h"

#include <QSharedPointer>

class QtAppAbstractSettingsManager;
class RemoteIncomingDownloadsProcessor;
class RemoteJsonRequestsManager;
class VhIpcMiscTasksClient;
class VhIpcSettings;

/// All conversations of the client with the main application: "settings", "incomingDownloads",
/// "jsonRequests" and "miscTasks".
class AppRemoteFrontendClientVhIpcProcessor : public QtVhIpcCompositePart {
    Q_OBJECT
public:
    AppRemoteFrontendClientVhIpcProcessor(
        const QSharedPointer<QtAppAbstractSettingsManager> &settingsManager,
        const QSharedPointer<RemoteIncomingDownloadsProcessor> &incomingDownloadsProcessor,
        const QSharedPointer<RemoteJsonRequestsManager> &jsonRequestsManager,
        QObject *parent = nullptr, QtClock &clock = QtClock::system());
    ~AppRemoteFrontendClientVhIpcProcessor() override;

    QSharedPointer<VhIpcSettings> settingsPart() const { return m_settingsPart; }
    QSharedPointer<VhIpcMiscTasksClient> miscTasksPart() const { return m_miscTasksPart; }

private:
    const QSharedPointer<VhIpcSettings> m_settingsPart;
    const QSharedPointer<VhIpcMiscTasksClient> m_miscTasksPart;
};
