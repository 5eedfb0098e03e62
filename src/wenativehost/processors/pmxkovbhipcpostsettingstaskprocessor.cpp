#include "pmxkovbhipcpostsettingstaskprocessor.h"

#include "consolemessagessender.h"
#include "pmxtaskerrors.h"
#include "pmxtaskresponses.h"
#include "webextensionsettingsmanager.h"

#include <QPointer>

#include <utility>

pmxKovBhIpcPostSettingsTaskProcessor::pmxKovBhIpcPostSettingsTaskProcessor(
    QSharedPointer<WebExtensionSettingsManager> manager, QWeakPointer<ConsoleMessagesSender> sender)
    : m_manager(std::move(manager)), m_sender(std::move(sender))
{
    // Queued: must follow the answer to the post.
    connect(m_manager.data(), &WebExtensionSettingsManager::storeOutcomeChanged, this,
            &pmxKovBhIpcPostSettingsTaskProcessor::onStoreOutcomeChanged, Qt::QueuedConnection);
}

void pmxKovBhIpcPostSettingsTaskProcessor::process(std::shared_ptr<pmxKovBhIpcTask> task,
                                                   Callback callback)
{
    // Without options in the message the task holds defaults that the user did not choose.
    if (task->readFailed()) {
        const auto response = pmxResponseTo(*task);
        response->error = pmxTaskErrors::invalidArguments;
        callback(task, response);
        return;
    }
    m_manager->whenInitialized([manager = QPointer(m_manager.data()), task = std::move(task),
                                callback = std::move(callback)] {
        manager->setSettings(task->post_settings, true);
        callback(task, pmxResponseTo(*task));
    });
}

void pmxKovBhIpcPostSettingsTaskProcessor::onStoreOutcomeChanged(
    AppClientSettingsWriter::Outcome outcome)
{
    const auto sender = m_sender.toStrongRef();
    if (!sender)
        return;
    pmxKovBhIpcTaskResponse message;
    message.type = "settings_store";
    if (outcome == AppClientSettingsWriter::Outcome::Stored)
        message.result = '1';
    else
        message.error = outcome == AppClientSettingsWriter::Outcome::Busy ? pmxTaskErrors::busy
                                                                          : pmxTaskErrors::failure;
    if (const auto text = pmxResponseText(message))
        sender->sendUtf8(*text);
}
