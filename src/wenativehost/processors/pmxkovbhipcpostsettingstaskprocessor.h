#pragma once

#include "pmxkovbhipctaskprocessor.h"

#include <QSharedPointer>

class WebExtensionSettingsManager;

/// "post_settings": takes over the options that the extension sends. A message without options
/// changes nothing and is answered with the error "invalid arguments".
class pmxKovBhIpcPostSettingsTaskProcessor : public pmxKovBhIpcTaskProcessor {
    Q_OBJECT
public:
    explicit pmxKovBhIpcPostSettingsTaskProcessor(
        QSharedPointer<WebExtensionSettingsManager> manager);
    ~pmxKovBhIpcPostSettingsTaskProcessor() override;

    void process(std::shared_ptr<pmxKovBhIpcTask> task, Callback callback) override;

private:
    const QSharedPointer<WebExtensionSettingsManager> m_manager;
};
