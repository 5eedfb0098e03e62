#pragma once

#include "appclientsettingswriter.h"
#include "pmxkovbhipctaskprocessor.h"

#include <QSharedPointer>
#include <QWeakPointer>

class ConsoleMessagesSender;
class WebExtensionSettingsManager;

/**
 * "post_settings": takes over the extension's options, once the current ones are known for
 * comparison. A message without options changes nothing and is answered with the
 * error "invalid arguments".
 *
 * The answer says nothing of the local store. When that cannot be written, and when it can be
 * again, a message "settings_store" with an empty id tells so.
 */
class pmxKovBhIpcPostSettingsTaskProcessor : public pmxKovBhIpcTaskProcessor {
    Q_OBJECT
public:
    /// Without a sender nothing is told of the store.
    explicit pmxKovBhIpcPostSettingsTaskProcessor(
        QSharedPointer<WebExtensionSettingsManager> manager,
        QWeakPointer<ConsoleMessagesSender> sender = {});

    void process(std::shared_ptr<pmxKovBhIpcTask> task, Callback callback) override;

private Q_SLOTS:
    void onStoreOutcomeChanged(AppClientSettingsWriter::Outcome outcome);

private:
    const QSharedPointer<WebExtensionSettingsManager> m_manager;
    const QWeakPointer<ConsoleMessagesSender> m_sender;
};
