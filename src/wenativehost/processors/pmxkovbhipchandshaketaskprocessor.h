#pragma once

#include "pmxkovbhipctaskprocessor.h"

#include <QWeakPointer>

class ConsoleMessagesReceiver;
class ConsoleMessagesSender;

/// "handshake": switches the channel to the formats that the extension requests, which already
/// apply to the answer, and answers with the host's version and capabilities.
class pmxKovBhIpcHandshakeTaskProcessor : public pmxKovBhIpcTaskProcessor {
    Q_OBJECT
public:
    pmxKovBhIpcHandshakeTaskProcessor(QWeakPointer<ConsoleMessagesReceiver> receiver,
                                      QWeakPointer<ConsoleMessagesSender> sender);

    void process(std::shared_ptr<pmxKovBhIpcTask> task, Callback callback) override;

Q_SIGNALS:
    /// From now on the extension can receive notifications.
    void answered();

private:
    const QWeakPointer<ConsoleMessagesReceiver> m_receiver;
    const QWeakPointer<ConsoleMessagesSender> m_sender;
};
