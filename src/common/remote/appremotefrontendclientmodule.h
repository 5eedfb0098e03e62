#pragma once

#include "ipcversion.h"
#include "qtabstractmodule.h"
#include "qtabstractserveraddress.h"
#include "qtclock.h"
#include "qtsingleshottimer.h"

#include <QIODevice>
#include <QPointer>
#include <QSharedPointer>

#include <memory>

class AbstractIncomingDownloadsProcessor;
class AbstractJsonRequestsManager;
class AppRemoteFrontendClientVhIpcProcessor;
class QtAbstractServerLauncher;
class QtAbstractSocket;
class QtAbstractSocketVhIpc;
class QtAbstractVhIpcClientHelper;
class QtAppAbstractSettingsManager;
class QtSocketConnectionKeeper;
class RemoteIncomingDownloadsProcessor;
class RemoteJsonRequestsManager;
class UniqueInt64IdGen;

/**
 * The whole link to the main application: made and kept connected by initialize(true), ended by
 * initialize(false).
 *
 * The take-down waits until what was already written to the link has left the process, for at most
 * flushWithinMs; with nothing pending it ends at once. What still waits for a connection is given
 * up. Belongs to one thread.
 */
class AppRemoteFrontendClientModule : public QtAbstractModule {
    Q_OBJECT
public:
    static constexpr int flushWithinMs = 2000;

    AppRemoteFrontendClientModule(QSharedPointer<QtAbstractSocket> socket, IpcVersion ipcVersion,
                                  bool useCbor, QtAbstractServerAddress serverAddress,
                                  QSharedPointer<QtAppAbstractSettingsManager> settingsManager,
                                  QSharedPointer<UniqueInt64IdGen> idGen,
                                  bool launchServerAutomatically, QObject *parent = nullptr,
                                  QtClock &clock = QtClock::system());
    ~AppRemoteFrontendClientModule() override;

    /// Any thread; on another than the module's it takes effect when that thread comes to it.
    Q_INVOKABLE void initialize(bool init) override;

    bool isConnected() const;

    /// These are null while the module is down.
    QSharedPointer<AbstractIncomingDownloadsProcessor> incomingDownloadsProcessor() const;
    QSharedPointer<AbstractJsonRequestsManager> jsonRequestsManager() const;
    QSharedPointer<AppRemoteFrontendClientVhIpcProcessor> vhIpcProcessor() const;

Q_SIGNALS:
    void connectedStateChanged(bool connected);
    /// Nothing of what was written to the link is left in the process.
    void sentAllData();

private Q_SLOTS:
    void connectSocketIODevice();
    void onSocketBytesWritten(qint64 bytes);
    void stopWaitingForData();
    void finishTakeDown();

private:
    void bringUp();
    void takeDown();
    bool isSendingData() const;

    const QSharedPointer<QtAbstractSocket> m_socket;
    const IpcVersion m_ipcVersion;
    const bool m_useCbor;
    const QtAbstractServerAddress m_serverAddress;
    const QSharedPointer<QtAppAbstractSettingsManager> m_settingsManager;
    const QSharedPointer<UniqueInt64IdGen> m_idGen;
    const bool m_launchServerAutomatically;
    QtClock &m_clock;
    QPointer<QIODevice> m_device;

    QSharedPointer<RemoteIncomingDownloadsProcessor> m_incomingDownloadsProcessor;
    QSharedPointer<RemoteJsonRequestsManager> m_jsonRequestsManager;
    QSharedPointer<AppRemoteFrontendClientVhIpcProcessor> m_vhIpcProcessor;
    QSharedPointer<QtAbstractSocketVhIpc> m_vhIpc;
    QSharedPointer<QtAbstractServerLauncher> m_launcher;
    QSharedPointer<QtSocketConnectionKeeper> m_keeper;
    QSharedPointer<QtAbstractVhIpcClientHelper> m_helper;
    const std::unique_ptr<QtSingleShotTimer> m_flushTimer;
};
