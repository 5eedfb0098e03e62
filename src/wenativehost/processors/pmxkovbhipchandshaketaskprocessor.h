#pragma once

#include "pmxkovbhipctaskprocessor.h"

#include <QWeakPointer>

class ConsoleMessagesReceiver;
class ConsoleMessagesSender;

/// "handshake": switches the channel to the forms that the extension asks for, which holds for the
/// answer already, and tells the host's version and capabilities.
class pmxKovBhIpcHandshakeTaskProcessor : public pmxKovBhIpcTaskProcessor {
    Q_OBJECT
public:
    pmxKovBhIpcHandshakeTaskProcessor(QWeakPointer<ConsoleMessagesReceiver> receiver,
                                      QWeakPointer<ConsoleMessagesSender> sender);

    void process(std::shared_ptr<pmxKovBhIpcTask> task, Callback callback) override;

Q_SIGNALS:
    /// The extension can be told something now.
    void answered();

private:
    const QWeakPointer<ConsoleMessagesReceiver> m_receiver;
    const QWeakPointer<ConsoleMessagesSender> m_sender;
};
