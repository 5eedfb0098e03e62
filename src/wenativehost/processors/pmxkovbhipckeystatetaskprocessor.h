#pragma once

#include "pmxkovbhipctaskprocessor.h"

#include <QSharedPointer>
#include <QWeakPointer>

class ConsoleMessagesSender;
class KeyStateWatcher;

/// "key_state": whether the watched key is held. The first such task also subscribes to changes,
/// which are sent as notifications.
class pmxKovBhIpcKeyStateTaskProcessor : public pmxKovBhIpcTaskProcessor {
    Q_OBJECT
public:
    pmxKovBhIpcKeyStateTaskProcessor(QWeakPointer<ConsoleMessagesSender> sender,
                                     QSharedPointer<KeyStateWatcher> watcher,
                                     QObject *parent = nullptr);

    void process(std::shared_ptr<pmxKovBhIpcTask> task, Callback callback) override;

public Q_SLOTS:
    void onKeyChanged();

private:
    const QWeakPointer<ConsoleMessagesSender> m_sender;
    const QSharedPointer<KeyStateWatcher> m_watcher;
    bool m_subscribed = false;
};
