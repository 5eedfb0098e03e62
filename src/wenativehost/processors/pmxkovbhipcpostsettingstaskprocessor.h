#pragma once

#include "pmxkovbhipctaskprocessor.h"

#include <QSharedPointer>

class WebExtensionSettingsManager;

/// "post_settings": takes over the options that the extension sends.
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
