#pragma once

#include "pmxkovbhipctaskprocessor.h"

/// "ui_strings": the captions of the extension's context menu in the user's language.
class pmxKovBhIpcUiStringsTaskProcessor : public pmxKovBhIpcTaskProcessor {
    Q_OBJECT
public:
    void process(std::shared_ptr<pmxKovBhIpcTask> task, Callback callback) override;
};
