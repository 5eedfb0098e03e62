#pragma once

#include "appclientsettingswriter.h"
#include "pmxkovbhipctaskprocessor.h"

#include <QSharedPointer>
#include <QWeakPointer>

class ConsoleMessagesSender;
class WebExtensionSettingsManager;

/**
 * "post_settings": applies the extension's options, once the current ones are known for comparison.
 * A message without options changes nothing and is answered with the error "invalid arguments".
 *
 * The answer does not depend on the local store. A notification "settings_store" reports when the
 * store cannot be written, and when it can be again.
 */
class pmxKovBhIpcPostSettingsTaskProcessor : public pmxKovBhIpcTaskProcessor {
    Q_OBJECT
public:
    /// Without a sender, the state of the store is not reported.
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
