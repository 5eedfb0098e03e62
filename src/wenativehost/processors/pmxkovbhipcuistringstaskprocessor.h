#pragma once

#include "pmxkovbhipctaskprocessor.h"

#include <QWeakPointer>

#include <string>

class ConsoleMessagesSender;

/// "ui_strings": the captions of the extension's context menu in the user's language. From the
/// first answer on, a change of the language is told in a message with an empty id.
class pmxKovBhIpcUiStringsTaskProcessor : public pmxKovBhIpcTaskProcessor {
    Q_OBJECT
public:
    /// Without a sender, answers only.
    explicit pmxKovBhIpcUiStringsTaskProcessor(QWeakPointer<ConsoleMessagesSender> sender = {});

    void process(std::shared_ptr<pmxKovBhIpcTask> task, Callback callback) override;

public Q_SLOTS:
    /// To be called when other translations are loaded. Nothing when the captions are the same.
    void onTranslationsLoaded();

private:
    const QWeakPointer<ConsoleMessagesSender> m_sender;
    /// One of those that were told last, which stands for all; empty before.
    std::string m_toldCaption;
};
