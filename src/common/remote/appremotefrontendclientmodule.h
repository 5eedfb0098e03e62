#pragma once

#include "ipcversion.h"
#include "qtabstractmodule.h"
#include "qtabstractserveraddress.h"
#include "qtclock.h"
#include "qtsingleshottimer.h"
#include "vhipcqueuedpart.h"

#include <QIODevice>
#include <QList>
#include <QPointer>
#include <QSharedPointer>

#include <functional>
#include <memory>
#include <utility>

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
 * The take-down first sees to what still waits for the application, see setHandOver(). Then it
 * waits for what was sent: for answersWithinMs until the application has answered the downloads,
 * then, with the sending half of the link closed, until it has taken everything, for flushWithinMs
 * in all. With nothing under way it ends at once. Belongs to one thread.
 */
class AppRemoteFrontendClientModule : public QtAbstractModule {
    Q_OBJECT
public:
    /// Both count from the beginning of the program's end, where that is known (EndDeadline).
    static constexpr int flushWithinMs = 1500;
    static constexpr int answersWithinMs = flushWithinMs - 300;
    /// Both are at least this, so that what fits into the kernel's buffers goes out even when the
    /// take-down begins late.
    static constexpr int leastWaitMs = 100;
    /// How much longer both are for a process that no browser waits for.
    static constexpr int heldLongerMs = 30'000;

    /// Takes messages over; false when it cannot.
    using HandOver = std::function<bool(const QList<VhIpcQueuedMessage> &)>;

    AppRemoteFrontendClientModule(QSharedPointer<QtAbstractSocket> socket, IpcVersion ipcVersion,
                                  bool useCbor, QtAbstractServerAddress serverAddress,
                                  QSharedPointer<QtAppAbstractSettingsManager> settingsManager,
                                  QSharedPointer<UniqueInt64IdGen> idGen,
                                  bool launchServerAutomatically, QObject *parent = nullptr,
                                  QtClock &clock = QtClock::system());
    ~AppRemoteFrontendClientModule() override;

    /// Any thread; on another than the module's it takes effect when that thread comes to it.
    Q_INVOKABLE void initialize(bool init) override;

    /**
     * Sets the function that takes over, at the take-down, the messages that still wait for the
     * application, except those that end with this process. If it fails, the take-down waits until
     * they were sent or have expired. Without one, the default, they are dropped.
     */
    void setHandOver(HandOver handOver) { m_handOver = std::move(handOver); }

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
    void continueTakeDown();
    void finishTakeDown();

private:
    void bringUp();
    void takeDown();
    void handOverQueued();
    bool isWriting() const;
    bool isAnythingUnderWay() const;

    const QSharedPointer<QtAbstractSocket> m_socket;
    const IpcVersion m_ipcVersion;
    const bool m_useCbor;
    const QtAbstractServerAddress m_serverAddress;
    const QSharedPointer<QtAppAbstractSettingsManager> m_settingsManager;
    const QSharedPointer<UniqueInt64IdGen> m_idGen;
    const bool m_launchServerAutomatically;
    QtClock &m_clock;
    QPointer<QIODevice> m_device;
    HandOver m_handOver;
    /// While taking down: the hand-over failed, so queued messages are waited for.
    bool m_isHolding = false;

    QSharedPointer<RemoteIncomingDownloadsProcessor> m_incomingDownloadsProcessor;
    QSharedPointer<RemoteJsonRequestsManager> m_jsonRequestsManager;
    QSharedPointer<AppRemoteFrontendClientVhIpcProcessor> m_vhIpcProcessor;
    QSharedPointer<QtAbstractSocketVhIpc> m_vhIpc;
    QSharedPointer<QtAbstractServerLauncher> m_launcher;
    QSharedPointer<QtSocketConnectionKeeper> m_keeper;
    QSharedPointer<QtAbstractVhIpcClientHelper> m_helper;
    const std::unique_ptr<QtSingleShotTimer> m_answersTimer;
    const std::unique_ptr<QtSingleShotTimer> m_flushTimer;
};
