#pragma once

#include "pmxkovbhipctaskprocessor.h"

#include <QWeakPointer>

#include <string>

class ConsoleMessagesSender;

/// "ui_strings": the captions of the extension's context menu in the user's language. The first one
/// also subscribes to changes of the language, which are sent as notifications.
class pmxKovBhIpcUiStringsTaskProcessor : public pmxKovBhIpcTaskProcessor {
    Q_OBJECT
public:
    /// Without a sender, answers only.
    explicit pmxKovBhIpcUiStringsTaskProcessor(QWeakPointer<ConsoleMessagesSender> sender = {});

    void process(std::shared_ptr<pmxKovBhIpcTask> task, Callback callback) override;

public Q_SLOTS:
    /// Call it when other translations were loaded. Does nothing if the captions are the same.
    void onTranslationsLoaded();

private:
    const QWeakPointer<ConsoleMessagesSender> m_sender;
    /// One of the captions that were sent last, to detect a change; empty before.
    std::string m_sentCaption;
};
