#include "pmxkovbhipccreatedownloadstaskprocessor.h"

#include "capturerules.h"
#include "keystatewatcher.h"
#include "pmxtaskerrors.h"
#include "pmxtaskresponses.h"
#include "qtappdefaultlogger.h"
#include "wbeincomingdownloadsprocessor.h"
#include "webextensionsettingsmanager.h"

#include <QPointer>

#include <utility>

namespace {

std::shared_ptr<pmxKovBhIpcTaskResponse> errorResponse(const pmxKovBhIpcTask &task,
                                                       const char *error)
{
    auto response = pmxResponseTo(task);
    response->error = error;
    return response;
}

} // namespace

pmxKovBhIpcCreateDownloadsTaskProcessor::pmxKovBhIpcCreateDownloadsTaskProcessor(
    QSharedPointer<WebExtensionSettingsManager> settingsManager,
    QSharedPointer<WbeIncomingDownloadsProcessor> incomingDownloads,
    QSharedPointer<KeyStateWatcher> keyStateWatcher)
    : m_settingsManager(std::move(settingsManager)),
      m_incomingDownloads(std::move(incomingDownloads)),
      m_keyStateWatcher(std::move(keyStateWatcher))
{
    connect(m_incomingDownloads.data(), &WbeIncomingDownloadsProcessor::finished, this,
            &pmxKovBhIpcCreateDownloadsTaskProcessor::onFinished);
}

void pmxKovBhIpcCreateDownloadsTaskProcessor::process(std::shared_ptr<pmxKovBhIpcTask> task,
                                                      Callback callback)
{
    // A record that was only read in part may lack downloads or their options.
    if (task->readFailed() || task->create_downloads.downloads.empty()) {
        callback(task, errorResponse(*task, pmxTaskErrors::invalidArguments));
        return;
    }
    if (!areRulesApplied(*task)) {
        submit(task, std::move(callback));
        return;
    }
    m_settingsManager->whenInitialized(
        [self = QPointer(this), task = std::move(task), callback = std::move(callback)] {
            if (!self)
                return;
            if (self->isLeftToBrowser(*task))
                callback(task, errorResponse(*task, pmxTaskErrors::ignoredDueSettings));
            else
                self->submit(task, callback);
        });
}

void pmxKovBhIpcCreateDownloadsTaskProcessor::submit(const std::shared_ptr<pmxKovBhIpcTask> &task,
                                                     Callback callback)
{
    const QString id = QString::fromStdString(task->id);
    m_pending.insert(id, {task, std::move(callback)});
    using Owner = WbeIncomingDownloadsProcessor::Owner;
    m_incomingDownloads->process(id, std::move(task->create_downloads.downloads),
                                 task->create_downloads.catchedDownloads ? Owner::Browser
                                                                         : Owner::User);
}

void pmxKovBhIpcCreateDownloadsTaskProcessor::onFinished(const QString &id, bool added,
                                                         bool aborted,
                                                         AbstractDownloadAbortReason abortReason,
                                                         const QString &error)
{
    const auto it = m_pending.constFind(id);
    if (it == m_pending.cend())
        return;
    const auto [task, callback] = *it;
    m_pending.erase(it);

    const auto response = pmxResponseTo(*task);
    pmxSetOutcome(*response, {added, aborted, abortReason, error});
    callback(task, response);
}

bool pmxKovBhIpcCreateDownloadsTaskProcessor::areRulesApplied(const pmxKovBhIpcTask &task)
{
    // The rules are for automatically caught downloads, which come one at a time.
    const pmxKovBhIpcTaskCreateDownloads &created = task.create_downloads;
    return created.downloads.size() == 1 && created.catchedDownloads && !created.ignoreSettings;
}

bool pmxKovBhIpcCreateDownloadsTaskProcessor::isLeftToBrowser(const pmxKovBhIpcTask &task) const
{
    const char *const rule =
        captureRuleAgainst(*task.create_downloads.downloads.front(), m_settingsManager->settings(),
                           m_keyStateWatcher.data());
    if (rule)
        logLine(1,
                QStringLiteral("[CaptureRules]: a download is left to the browser: ")
                    + QLatin1String(rule));
    return rule != nullptr;
}
