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
 * The link to the main application: created and kept connected by initialize(true), closed by
 * initialize(false).
 *
 * The take-down first hands over the messages that still wait for the application, see
 * setHandOver(). Then it waits for sent messages: up to answersTimeoutMs for the answers to
 * downloads; then it closes the sending half of the link, and waits until the application has read
 * everything, up to flushTimeoutMs in all. If nothing is pending, it ends at once. Belongs to one
 * thread.
 */
class AppRemoteFrontendClientModule : public QtAbstractModule {
    Q_OBJECT
public:
    /// Both count from the beginning of the program's end, if it has begun (EndDeadline).
    static constexpr int flushTimeoutMs = 1500;
    static constexpr int answersTimeoutMs = flushTimeoutMs - 300;
    /// The minimum of both, so that data that fits into the kernel's buffers is sent even when the
    /// take-down begins late.
    static constexpr int minWaitMs = 100;
    /// The time by which both are longer in a process for which no browser waits.
    static constexpr int extraHoldMs = 30'000;

    /// Takes over messages; false on failure.
    using HandOver = std::function<bool(const QList<VhIpcQueuedMessage> &)>;

    AppRemoteFrontendClientModule(QSharedPointer<QtAbstractSocket> socket, IpcVersion ipcVersion,
                                  bool useCbor, QtAbstractServerAddress serverAddress,
                                  QSharedPointer<QtAppAbstractSettingsManager> settingsManager,
                                  QSharedPointer<UniqueInt64IdGen> idGen,
                                  bool launchServerAutomatically, QObject *parent = nullptr,
                                  QtClock &clock = QtClock::system());
    ~AppRemoteFrontendClientModule() override;

    /// Any thread; on another than the module's it takes effect from the module's event loop.
    Q_INVOKABLE void initialize(bool init) override;

    /**
     * Sets the function that takes over, at the take-down, the messages that still wait for the
     * application, except those that end with this process. If it fails, the take-down waits until
     * they are sent or have expired. Without such a function, the default, they are dropped.
     */
    void setHandOver(HandOver handOver) { m_handOver = std::move(handOver); }

    bool isConnected() const;

    /// These are null while the module is down.
    QSharedPointer<AbstractIncomingDownloadsProcessor> incomingDownloadsProcessor() const;
    QSharedPointer<AbstractJsonRequestsManager> jsonRequestsManager() const;
    QSharedPointer<AppRemoteFrontendClientVhIpcProcessor> vhIpcProcessor() const;

Q_SIGNALS:
    void connectedStateChanged(bool connected);
    /// Whether all data written to the link has left the process.
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
    /// The hand-over at the end failed, so queued messages are waited for.
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
