#include "wenativehosttasksprocessor.h"

#include "appclientmodule.h"
#include "assertionlog.h"
#include "browsertabsrequeststracker.h"
#include "consolemessagesreceiver.h"
#include "consolemessagessender.h"
#include "keystatewatcher.h"
#include "mediarequestsanalyzer.h"
#include "mediarequestscollector.h"
#include "networkrequestscollector.h"
#include "pmxjsonserializeobject.h"
#include "pmxkovbhipcbrowserproxytaskprocessor.h"
#include "pmxkovbhipccreatedownloadstaskprocessor.h"
#include "pmxkovbhipcdownloadstatereporttaskprocessor.h"
#include "pmxkovbhipchandshaketaskprocessor.h"
#include "pmxkovbhipckeystatetaskprocessor.h"
#include "pmxkovbhipckovjsontaskprocessor.h"
#include "pmxkovbhipcnetworkrequestnotificationtaskprocessor.h"
#include "pmxkovbhipcpostsettingstaskprocessor.h"
#include "pmxkovbhipcquerysettingstaskprocessor.h"
#include "pmxkovbhipcuistringstaskprocessor.h"
#include "pmxkovbhipcvideosniffertaskprocessor.h"
#include "pmxtaskresponses.h"
#include "qtappdelayedshutdownmanager.h"
#include "qtobjectfactory.h"
#include "wbeincomingdownloadsprocessor.h"
#include "webextensionsettingsmanager.h"

#include <utility>

namespace {

/// The Insert key, in the numbering of virtual keys that the extension uses.
constexpr int watchedKeyCode = 45;

} // namespace

WeNativeHostTasksProcessor::WeNativeHostTasksProcessor(
    QSharedPointer<QtAppDelayedShutdownManager> delayedShutdownManager,
    QWeakPointer<ConsoleMessagesReceiver> receiver, QWeakPointer<ConsoleMessagesSender> sender,
    QSharedPointer<WebExtensionSettingsManager> settingsManager,
    QSharedPointer<AppClientModule> appClientModule, QObject *parent)
    : QObject(parent), m_delayedShutdownManager(std::move(delayedShutdownManager)),
      m_receiver(std::move(receiver)), m_sender(std::move(sender)),
      m_settingsManager(std::move(settingsManager)), m_appClientModule(std::move(appClientModule)),
      m_incomingDownloads(qtCreateObject<WbeIncomingDownloadsProcessor>(m_appClientModule)),
      m_networkRequests(qtCreateObject<NetworkRequestsCollector>()),
      m_mediaRequests(qtCreateObject<MediaRequestsCollector>(m_networkRequests)),
      m_tabsRequests(qtCreateObject<BrowserTabsRequestsTracker>()),
      m_mediaAnalyzer(qtCreateObject<MediaRequestsAnalyzer>(m_mediaRequests)),
      m_keyStateWatcher(qtCreateObject<KeyStateWatcher>(watchedKeyCode))
{
    if (const auto strongReceiver = m_receiver.toStrongRef())
        connect(strongReceiver.data(), &ConsoleMessagesReceiver::gotMessage, this,
                &WeNativeHostTasksProcessor::onConsoleGotMessage);
    registerProcessors();
}

WeNativeHostTasksProcessor::~WeNativeHostTasksProcessor() = default;

void WeNativeHostTasksProcessor::onConsoleGotMessage(const QString &message)
{
    const auto task = std::make_shared<pmxKovBhIpcTask>();
    if (!pmxJsonSerializeObject(*task, message.toStdString(), 0))
        logAssertionFailed(QStringLiteral("pmxJsonSerializeObject(*task, msg.toStdString())"),
                           QStringLiteral("../../src/wenativehost/wenativehosttasksprocessor"),
                           136);
    process(task,
            [weakSender = m_sender](const std::shared_ptr<pmxKovBhIpcTask> &,
                                    const std::shared_ptr<pmxKovBhIpcTaskResponse> &response) {
                if (const auto sender = weakSender.toStrongRef())
                    sender->sendMessage(pmxResponseText(*response).value_or(QString()));
            });
}

void WeNativeHostTasksProcessor::process(std::shared_ptr<pmxKovBhIpcTask> task, Callback callback)
{
    const kov_ipc_task_type type = task->get_type();
    if (type == kov_ipc_task_shutdown) {
        // Nothing of this object may be used afterwards: the take-down that follows destroys it.
        const auto manager = m_delayedShutdownManager;
        manager->shutdownApp(QString());
        return;
    }
    if (const auto it = m_processors.find(type); it != m_processors.cend()) {
        it->second->process(std::move(task), std::move(callback));
        return;
    }
    const auto response = pmxResponseTo(*task);
    response->error = "unknown_task_type";
    callback(task, response);
}

void WeNativeHostTasksProcessor::registerProcessors()
{
    registerProcessor(kov_ipc_task_handshake,
                      std::make_unique<pmxKovBhIpcHandshakeTaskProcessor>(m_receiver, m_sender));
    registerProcessor(kov_ipc_task_ui_strings,
                      std::make_unique<pmxKovBhIpcUiStringsTaskProcessor>());
    registerProcessor(
        kov_ipc_task_query_settings,
        std::make_unique<pmxKovBhIpcQuerySettingsTaskProcessor>(m_settingsManager, m_sender));
    registerProcessor(kov_ipc_task_browser_proxy,
                      std::make_unique<pmxKovBhIpcBrowserProxyTaskProcessor>());
    registerProcessor(kov_ipc_task_post_settings,
                      std::make_unique<pmxKovBhIpcPostSettingsTaskProcessor>(m_settingsManager));
    registerProcessor(kov_ipc_task_create_downloads,
                      std::make_unique<pmxKovBhIpcCreateDownloadsTaskProcessor>(
                          m_settingsManager, m_incomingDownloads, m_keyStateWatcher));
    registerProcessor(kov_ipc_task_video_sniffer,
                      std::make_unique<pmxKovBhIpcVideoSnifferTaskProcessor>(m_incomingDownloads,
                                                                             m_mediaAnalyzer));
    const auto activityMonitor = m_appClientModule->browserActivityMonitor();
    registerProcessor(kov_ipc_task_network_request_notification,
                      std::make_unique<pmxKovBhIpcNetworkRequestNotificationTaskProcessor>(
                          activityMonitor, m_networkRequests, m_tabsRequests));
    registerProcessor(
        kov_ipc_task_browser_download_state_report,
        std::make_unique<pmxKovBhIpcDownloadStateReportTaskProcessor>(activityMonitor));
    registerProcessor(kov_ipc_task_kov_json_task,
                      std::make_unique<pmxKovBhIpcKovJsonTaskProcessor>(
                          m_appClientModule->jsonRequestsManager()));
    registerProcessor(
        kov_ipc_task_key_state,
        std::make_unique<pmxKovBhIpcKeyStateTaskProcessor>(m_sender, m_keyStateWatcher));
}

void WeNativeHostTasksProcessor::registerProcessor(
    kov_ipc_task_type type, std::unique_ptr<pmxKovBhIpcTaskProcessor> processor)
{
    m_processors.insert_or_assign(type, std::move(processor));
}
