#pragma once

#include "abstractdownloadenums.h"
#include "pmxkovbhipctaskprocessor.h"

#include <QHash>
#include <QSharedPointer>
#include <QString>

#include <utility>

class KeyStateWatcher;
class WbeIncomingDownloadsProcessor;
class WebExtensionSettingsManager;

/**
 * "create_downloads": leaves a caught download to the browser where the user's rules say so, and
 * has the application make all others. Answered when the application has answered.
 *
 * A task replaces one of the same id that is still under way, which is then never answered.
 */
class pmxKovBhIpcCreateDownloadsTaskProcessor : public pmxKovBhIpcTaskProcessor {
    Q_OBJECT
public:
    pmxKovBhIpcCreateDownloadsTaskProcessor(
        QSharedPointer<WebExtensionSettingsManager> settingsManager,
        QSharedPointer<WbeIncomingDownloadsProcessor> incomingDownloads,
        QSharedPointer<KeyStateWatcher> keyStateWatcher);

    void process(std::shared_ptr<pmxKovBhIpcTask> task, Callback callback) override;

public Q_SLOTS:
    void onFinished(const QString &id, bool added, bool aborted,
                    AbstractDownloadAbortReason abortReason, const QString &error);

private:
    /// Whether the user's rules are to be asked.
    static bool isJudged(const pmxKovBhIpcTask &task);
    bool isLeftToBrowser(const pmxKovBhIpcTask &task) const;
    void submit(const std::shared_ptr<pmxKovBhIpcTask> &task, Callback callback);

    const QSharedPointer<WebExtensionSettingsManager> m_settingsManager;
    const QSharedPointer<WbeIncomingDownloadsProcessor> m_incomingDownloads;
    const QSharedPointer<KeyStateWatcher> m_keyStateWatcher;
    QHash<QString, std::pair<std::shared_ptr<pmxKovBhIpcTask>, Callback>> m_pending;
};
