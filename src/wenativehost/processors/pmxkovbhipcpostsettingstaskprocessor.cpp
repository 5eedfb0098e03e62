#include "pmxkovbhipcpostsettingstaskprocessor.h"

#include "pmxtaskresponses.h"
#include "webextensionsettingsmanager.h"

#include <utility>

pmxKovBhIpcPostSettingsTaskProcessor::pmxKovBhIpcPostSettingsTaskProcessor(
    QSharedPointer<WebExtensionSettingsManager> manager)
    : m_manager(std::move(manager))
{
}

pmxKovBhIpcPostSettingsTaskProcessor::~pmxKovBhIpcPostSettingsTaskProcessor() = default;

void pmxKovBhIpcPostSettingsTaskProcessor::process(std::shared_ptr<pmxKovBhIpcTask> task,
                                                   Callback callback)
{
    const auto response = pmxResponseTo(*task);
    // Without options in the message the task holds the defaults; they are nobody's wish.
    if (task->readFailed())
        response->error = "invalid arguments";
    else
        m_manager->setSettings(task->post_settings, true);
    callback(task, response);
}
