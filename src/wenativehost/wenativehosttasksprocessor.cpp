#include "wenativehosttasksprocessor.h"

#include "appclientmodule.h"
#include "appdataaccesshelper.h"
#include "assertionlog.h"
#include "browsertabsrequeststracker.h"
#include "consolemessagesreceiver.h"
#include "consolemessagessender.h"
#include "keystatewatcher.h"
#include "lostdownloads.h"
#include "mediarequestsanalyzer.h"
#include "mediarequestscollector.h"
#include "networkrequestscollector.h"
#include "pagemedianotifier.h"
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
#include "pmxtaskerrors.h"
#include "pmxtaskresponses.h"
#include "qtappdefaultlogger.h"
#include "qtappdelayedshutdownmanager.h"
#include "qtobjectfactory.h"
#include "wbeincomingdownloadsprocessor.h"
#include "webextensionsettingsmanager.h"

#include <QElapsedTimer>

#include <malloc.h>
#include <new>
#include <string>
#include <string_view>
#include <utility>

namespace {

/// The Insert key, as a Windows virtual-key code, which is what the extension uses.
constexpr int watchedKeyCode = 45;

/// In bytes.
constexpr qsizetype largeMessage = qsizetype{1024} * 1024;

/// The error as it may be logged: texts for the user may name files.
QString loggedError(const std::string &error)
{
    return pmxTaskErrors::contains(error) ? QString::fromStdString(error)
                                          : QStringLiteral("a text for the user");
}

/// The answer to one message: sent, and logged.
class Answer {
public:
    Answer(QWeakPointer<ConsoleMessagesSender> sender, qsizetype messageSize)
        : m_sender(std::move(sender)), m_wasLarge(messageSize > largeMessage)
    {
        m_sinceMessage.start();
    }

    void send(pmxKovBhIpcTaskResponse &response) const
    {
        if (!response.error.empty() || logsLevel(3))
            log(response);
        if (const auto sender = m_sender.toStrongRef())
            sender->sendUtf8(pmxResponseText(response).value_or(std::string()));
        // The message's memory is now fragmented free memory, which the C library would keep.
        if (m_wasLarge)
            ::malloc_trim(0);
    }

private:
    void log(const pmxKovBhIpcTaskResponse &response) const
    {
        constexpr int maxShown = 20;
        const kov_ipc_task_type type = kovIpcTaskTypeFromText(response.type);
        const QString id = QString::fromUtf8(response.id.substr(0, maxShown).c_str());
        const QString name = type == kov_ipc_task_unknown
            ? QStringLiteral("of unknown type")
            : QString::fromStdString(kovIpcTaskTypeName(type));
        logLine(response.error.empty() ? 3 : 1,
                QStringLiteral("[WeNativeHostTasksProcessor]: task %1 #%2 answered after %3 ms: %4")
                    .arg(name, id, QString::number(m_sinceMessage.elapsed()),
                         response.error.empty() ? QStringLiteral("no error")
                                                : loggedError(response.error)));
    }

    const QWeakPointer<ConsoleMessagesSender> m_sender;
    const bool m_wasLarge;
    QElapsedTimer m_sinceMessage;
};

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
      m_pageMediaNotifier(
          qtCreateObject<PageMediaNotifier>(m_mediaRequests, m_mediaAnalyzer, m_sender)),
      m_keyStateWatcher(qtCreateObject<KeyStateWatcher>(watchedKeyCode))
{
    if (const auto strongReceiver = m_receiver.toStrongRef())
        connect(strongReceiver.data(), &ConsoleMessagesReceiver::gotMessage, this,
                &WeNativeHostTasksProcessor::onConsoleGotMessage);
    registerProcessors();
}

WeNativeHostTasksProcessor::~WeNativeHostTasksProcessor()
{
    logLine(2,
            QStringLiteral("[WeNativeHostTasksProcessor]: %1 messages were taken")
                .arg(m_messagesCount));
}

void WeNativeHostTasksProcessor::onConsoleGotMessage(const QString &message)
{
    handleMessage(message.toUtf8());
}

void WeNativeHostTasksProcessor::onConsoleGotBytes(const QSharedPointer<QByteArray> &message)
{
    handleMessage(std::exchange(*message, {}));
}

void WeNativeHostTasksProcessor::handleMessage(QByteArray &&message)
{
    ++m_messagesCount;
    const auto task = std::make_shared<pmxKovBhIpcTask>();
    const auto answer = std::make_shared<Answer>(m_sender, message.size());
    try {
        if (!readTask(*task, std::move(message)))
            logAssertionFailed(QStringLiteral("pmxJsonSerializeObject(*task, msg.toStdString())"),
                               QStringLiteral("../../src/wenativehost/wenativehosttasksprocessor"),
                               136);
        process(task, [answer](const auto &, const auto &response) { answer->send(*response); });
    } catch (const std::bad_alloc &) {
        const auto response = pmxResponseTo(*task);
        response->error = pmxTaskErrors::notEnoughMemory;
        answer->send(*response);
    }
}

// The message and its parsed form are freed at the end of this function, before the task is
// handled.
bool WeNativeHostTasksProcessor::readTask(pmxKovBhIpcTask &task, QByteArray &&message)
{
    const QByteArray text = std::move(message);
    return pmxJsonSerializeObject(
        task, std::string_view(text.constData(), static_cast<size_t>(text.size())), 0);
}

void WeNativeHostTasksProcessor::process(std::shared_ptr<pmxKovBhIpcTask> task, Callback callback)
{
    const kov_ipc_task_type type = task->get_type();
    if (type == kov_ipc_task_shutdown) {
        logLine(1, QStringLiteral("[WeNativeHostTasksProcessor]: the extension ends the host"));
        // This object must not be used afterwards: the take-down destroys it.
        const auto manager = m_delayedShutdownManager;
        manager->shutdownApp(QString());
        return;
    }
    if (const auto it = m_processors.find(type); it != m_processors.cend()) {
        it->second->process(std::move(task), std::move(callback));
        return;
    }
    const auto response = pmxResponseTo(*task);
    response->error = pmxTaskErrors::unknownTaskType;
    callback(task, response);
}

void WeNativeHostTasksProcessor::registerProcessors()
{
    auto handshake = std::make_unique<pmxKovBhIpcHandshakeTaskProcessor>(m_receiver, m_sender);
    connect(handshake.get(), &pmxKovBhIpcHandshakeTaskProcessor::answered, this,
            &WeNativeHostTasksProcessor::reportLostDownloads, Qt::SingleShotConnection);
    registerProcessor(kov_ipc_task_handshake, std::move(handshake));
    auto uiStrings = std::make_unique<pmxKovBhIpcUiStringsTaskProcessor>(m_sender);
    connect(this, &WeNativeHostTasksProcessor::translationsLoaded, uiStrings.get(),
            &pmxKovBhIpcUiStringsTaskProcessor::onTranslationsLoaded);
    registerProcessor(kov_ipc_task_ui_strings, std::move(uiStrings));
    registerProcessor(
        kov_ipc_task_query_settings,
        std::make_unique<pmxKovBhIpcQuerySettingsTaskProcessor>(m_settingsManager, m_sender));
    registerProcessor(kov_ipc_task_browser_proxy,
                      std::make_unique<pmxKovBhIpcBrowserProxyTaskProcessor>());
    registerProcessor(
        kov_ipc_task_post_settings,
        std::make_unique<pmxKovBhIpcPostSettingsTaskProcessor>(m_settingsManager, m_sender));
    registerProcessor(kov_ipc_task_create_downloads,
                      std::make_unique<pmxKovBhIpcCreateDownloadsTaskProcessor>(
                          m_settingsManager, m_incomingDownloads, m_keyStateWatcher));
    registerProcessor(kov_ipc_task_video_sniffer,
                      std::make_unique<pmxKovBhIpcVideoSnifferTaskProcessor>(m_incomingDownloads,
                                                                             m_mediaAnalyzer));
    const auto activityMonitor = m_appClientModule->browserActivityMonitor();
    registerProcessor(kov_ipc_task_network_request_notification,
                      std::make_unique<pmxKovBhIpcNetworkRequestNotificationTaskProcessor>(
                          activityMonitor, m_networkRequests, m_tabsRequests, m_pageMediaNotifier));
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

void WeNativeHostTasksProcessor::reportLostDownloads()
{
    const auto sender = m_sender.toStrongRef();
    const auto dataAccess = m_appClientModule->dataAccessHelper();
    if (!sender || !dataAccess)
        return;
    const QList<LostDownload> lost = LostDownloads(*dataAccess).take();
    if (!lost.isEmpty())
        logLine(1,
                QStringLiteral("[WeNativeHostTasksProcessor]: WARNING: %1 downloads never reached "
                               "the application after an earlier host had ended")
                    .arg(lost.size()));
    for (const LostDownload &each : lost) {
        pmxKovBhIpcTaskResponse message;
        message.type = "lost_download";
        message.result = each.name.toStdString();
        message.error = each.reason.toStdString();
        if (const auto text = pmxResponseText(message))
            sender->sendUtf8(*text);
    }
}

void WeNativeHostTasksProcessor::registerProcessor(
    kov_ipc_task_type type, std::unique_ptr<pmxKovBhIpcTaskProcessor> processor)
{
    m_processors.insert_or_assign(type, std::move(processor));
}
