#pragma once

#include "pmxkovbhipctaskprocessor.h"

/// "browser_proxy": declined, whatever the browser's proxy is.
class pmxKovBhIpcBrowserProxyTaskProcessor : public pmxKovBhIpcTaskProcessor {
    Q_OBJECT
public:
    void process(std::shared_ptr<pmxKovBhIpcTask> task, Callback callback) override;
};
