#pragma once

#include "qtclock.h"
#include "qtvhipccompositepart.h"
#include "vhipcqueuedpart.h"

#include <QList>
#include <QSharedPointer>

class QtAppAbstractSettingsManager;
class RemoteIncomingDownloadsProcessor;
class RemoteJsonRequestsManager;
class VhIpcIncomingDownloadsClient;
class VhIpcJsonRequests;
class VhIpcSettings;

/// The client's parts of the link to the main application: "settings", "incomingDownloads",
/// "jsonRequests" and "miscTasks".
class AppRemoteFrontendClientVhIpcProcessor : public QtVhIpcCompositePart {
    Q_OBJECT
public:
    AppRemoteFrontendClientVhIpcProcessor(
        const QSharedPointer<QtAppAbstractSettingsManager> &settingsManager,
        const QSharedPointer<RemoteIncomingDownloadsProcessor> &incomingDownloadsProcessor,
        const QSharedPointer<RemoteJsonRequestsManager> &jsonRequestsManager,
        QObject *parent = nullptr, QtClock &clock = QtClock::system());

    QSharedPointer<VhIpcSettings> settingsPart() const { return m_settingsPart; }

    /// Whether messages wait for the application; only while isRequiringServer().
    bool hasQueued() const;
    /// The messages of all parts that wait for the application; see VhIpcQueuedPart.
    QList<VhIpcQueuedMessage> queued() const;
    void dropQueued();
    void dropQueuedEndingWithProcess();
    /// A message for a part without a queue is dropped.
    void sendOrQueue(const VhIpcQueuedMessage &queued);
    /// Whether downloads that were sent have not been answered yet.
    bool awaitsAnswers() const;

private:
    const QSharedPointer<VhIpcSettings> m_settingsPart;
    const QSharedPointer<VhIpcIncomingDownloadsClient> m_downloadsPart;
    const QSharedPointer<VhIpcJsonRequests> m_jsonPart;
};
