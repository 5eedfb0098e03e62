#pragma once

#include "kovipctasktype.h"
#include "pmxkovbhipctaskprocessor.h"

#include <QByteArray>
#include <QObject>
#include <QSharedPointer>
#include <QString>
#include <QWeakPointer>

#include <map>
#include <memory>

class AppClientModule;
class BrowserTabsRequestsTracker;
class ConsoleMessagesReceiver;
class ConsoleMessagesSender;
class KeyStateWatcher;
class MediaRequestsAnalyzer;
class MediaRequestsCollector;
class NetworkRequestsCollector;
class PageMediaNotifier;
class QtAppDelayedShutdownManager;
class WbeIncomingDownloadsProcessor;
class WebExtensionSettingsManager;

/**
 * The dispatcher: parses each message from the browser into a task, hands it to the processor of
 * the task's type, and sends that one's answer.
 *
 * Belongs to the main thread, and handles messages in the order of their arrival. Does not track
 * pending tasks. Logs each answer: an error at level 1, any other at level 3. A "shutdown" task may
 * destroy it before process() returns.
 */
class WeNativeHostTasksProcessor : public QObject {
    Q_OBJECT
public:
    using Callback = pmxKovBhIpcTaskProcessor::Callback;

    WeNativeHostTasksProcessor(QSharedPointer<QtAppDelayedShutdownManager> delayedShutdownManager,
                               QWeakPointer<ConsoleMessagesReceiver> receiver,
                               QWeakPointer<ConsoleMessagesSender> sender,
                               QSharedPointer<WebExtensionSettingsManager> settingsManager,
                               QSharedPointer<AppClientModule> appClientModule,
                               QObject *parent = nullptr);
    ~WeNativeHostTasksProcessor() override;

    /// Calls back at once, later or, for "shutdown", never.
    virtual void process(std::shared_ptr<pmxKovBhIpcTask> task, Callback callback);

Q_SIGNALS:
    /// The owner emits it when the language has changed.
    void translationsLoaded();

public Q_SLOTS:
    /// A malformed message is logged, and dispatched as far as it could be read.
    void onConsoleGotMessage(const QString &message);
    /// The same for a message in UTF-8, which is moved out.
    void onConsoleGotBytes(const QSharedPointer<QByteArray> &message);

private:
    /// Reads the task; false when not all of it could be read.
    static bool readTask(pmxKovBhIpcTask &task, QByteArray &&message);
    void handleMessage(QByteArray &&message);
    void registerProcessors();
    void reportLostDownloads();
    void registerProcessor(kov_ipc_task_type type,
                           std::unique_ptr<pmxKovBhIpcTaskProcessor> processor);

    const QSharedPointer<QtAppDelayedShutdownManager> m_delayedShutdownManager;
    const QWeakPointer<ConsoleMessagesReceiver> m_receiver;
    const QWeakPointer<ConsoleMessagesSender> m_sender;
    const QSharedPointer<WebExtensionSettingsManager> m_settingsManager;
    const QSharedPointer<AppClientModule> m_appClientModule;
    const QSharedPointer<WbeIncomingDownloadsProcessor> m_incomingDownloads;
    const QSharedPointer<NetworkRequestsCollector> m_networkRequests;
    const QSharedPointer<MediaRequestsCollector> m_mediaRequests;
    const QSharedPointer<BrowserTabsRequestsTracker> m_tabsRequests;
    const QSharedPointer<MediaRequestsAnalyzer> m_mediaAnalyzer;
    const QSharedPointer<PageMediaNotifier> m_pageMediaNotifier;
    const QSharedPointer<KeyStateWatcher> m_keyStateWatcher;
    std::map<kov_ipc_task_type, std::unique_ptr<pmxKovBhIpcTaskProcessor>> m_processors;
    qint64 m_messagesCount = 0;
};
