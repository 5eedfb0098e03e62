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
 * "create_downloads": leaves a caught download to the browser if a capture rule says so, and hands
 * all others to the application. Answered when the application has answered.
 *
 * A task replaces a pending one with the same id, which is then never answered.
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
    /// Whether the capture rules apply.
    static bool areRulesApplied(const pmxKovBhIpcTask &task);
    bool isLeftToBrowser(const pmxKovBhIpcTask &task) const;
    void submit(const std::shared_ptr<pmxKovBhIpcTask> &task, Callback callback);

    const QSharedPointer<WebExtensionSettingsManager> m_settingsManager;
    const QSharedPointer<WbeIncomingDownloadsProcessor> m_incomingDownloads;
    const QSharedPointer<KeyStateWatcher> m_keyStateWatcher;
    QHash<QString, std::pair<std::shared_ptr<pmxKovBhIpcTask>, Callback>> m_pending;
};
