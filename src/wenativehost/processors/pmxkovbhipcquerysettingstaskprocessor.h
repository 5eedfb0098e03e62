#pragma once

#include "pmxkovbhipctaskprocessor.h"

#include <QSharedPointer>
#include <QWeakPointer>

#include <utility>
#include <vector>

class ConsoleMessagesSender;
class WebExtensionSettingsManager;
class pmxKovBhIpcQuerySettingsTaskResponse;

/// "query_settings": the extension's options, as soon as they are known. The first one also
/// subscribes to changes that the extension did not make, which are sent as notifications.
class pmxKovBhIpcQuerySettingsTaskProcessor : public pmxKovBhIpcTaskProcessor {
    Q_OBJECT
public:
    pmxKovBhIpcQuerySettingsTaskProcessor(QSharedPointer<WebExtensionSettingsManager> manager,
                                          QWeakPointer<ConsoleMessagesSender> sender);

    void process(std::shared_ptr<pmxKovBhIpcTask> task, Callback callback) override;
    /// Answers with the current options.
    void respond(const std::shared_ptr<pmxKovBhIpcTask> &task, const Callback &callback);

public Q_SLOTS:
    void onSettingsInitialized();
    void onSettingsChanged(bool byExtension);

private:
    /// Lets the response share the manager's record.
    void fill(pmxKovBhIpcQuerySettingsTaskResponse &response) const;

    const QSharedPointer<WebExtensionSettingsManager> m_manager;
    const QWeakPointer<ConsoleMessagesSender> m_sender;
    /// In the order of their arrival.
    std::vector<std::pair<std::shared_ptr<pmxKovBhIpcTask>, Callback>> m_waiting;
    bool m_answered = false;
};
