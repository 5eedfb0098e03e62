#include "pmxkovbhipcquerysettingstaskprocessor.h"

#include "consolemessagessender.h"
#include "kovipctasktype.h"
#include "pmxkovbhipcquerysettingstaskresponse.h"
#include "pmxtaskresponses.h"
#include "webextensionsettingsmanager.h"

pmxKovBhIpcQuerySettingsTaskProcessor::pmxKovBhIpcQuerySettingsTaskProcessor(
    QSharedPointer<WebExtensionSettingsManager> manager, QWeakPointer<ConsoleMessagesSender> sender)
    : m_manager(std::move(manager)), m_sender(std::move(sender))
{
    connect(m_manager.data(), &WebExtensionSettingsManager::settingsChanged, this,
            &pmxKovBhIpcQuerySettingsTaskProcessor::onSettingsChanged);
}

void pmxKovBhIpcQuerySettingsTaskProcessor::process(std::shared_ptr<pmxKovBhIpcTask> task,
                                                    Callback callback)
{
    if (m_manager->isInitialized()) {
        m_manager->initialize();
        respond(task, callback);
        return;
    }
    m_waiting.emplace_back(std::move(task), std::move(callback));
    connect(m_manager.data(), &WebExtensionSettingsManager::initialized, this,
            &pmxKovBhIpcQuerySettingsTaskProcessor::onSettingsInitialized, Qt::UniqueConnection);
    m_manager->initialize();
}

void pmxKovBhIpcQuerySettingsTaskProcessor::respond(const std::shared_ptr<pmxKovBhIpcTask> &task,
                                                    const Callback &callback)
{
    const auto response = pmxResponseTo<pmxKovBhIpcQuerySettingsTaskResponse>(*task);
    fill(*response);
    callback(task, response);
    m_answered = true;
}

void pmxKovBhIpcQuerySettingsTaskProcessor::onSettingsInitialized()
{
    const auto waiting = std::exchange(m_waiting, {});
    for (const auto &[task, callback] : waiting)
        respond(task, callback);
}

void pmxKovBhIpcQuerySettingsTaskProcessor::onSettingsChanged(bool byExtension)
{
    const auto sender = m_sender.toStrongRef();
    if (byExtension || !m_answered || !sender)
        return;
    pmxKovBhIpcQuerySettingsTaskResponse response;
    response.type = kovIpcTaskTypeName(kov_ipc_task_query_settings);
    fill(response);
    if (const auto text = pmxResponseText(response))
        sender->sendUtf8(*text);
}

void pmxKovBhIpcQuerySettingsTaskProcessor::fill(
    pmxKovBhIpcQuerySettingsTaskResponse &response) const
{
    // The response may outlive this processor, so it holds the manager through its record.
    const auto manager = std::make_shared<QSharedPointer<WebExtensionSettingsManager>>(m_manager);
    response.settings =
        std::shared_ptr<const WebExtensionSettings>(manager, &m_manager->settings());
}
