#pragma once

#include "pmxkovbhipctaskprocessor.h"

#include <QSharedPointer>

class AbstractJsonRequestsManager;

/**
 * "kov_json_task": passes a JSON text on to the main application, as a request under the task's own
 * id. Answered at once; what the application says to it is not relayed.
 */
class pmxKovBhIpcKovJsonTaskProcessor : public pmxKovBhIpcTaskProcessor {
    Q_OBJECT
public:
    explicit pmxKovBhIpcKovJsonTaskProcessor(
        QSharedPointer<AbstractJsonRequestsManager> jsonRequestsManager);

    /// Throws, with the text "stoll", std::invalid_argument when the id does not begin with a
    /// decimal number and std::out_of_range when that is no signed 64-bit one.
    void process(std::shared_ptr<pmxKovBhIpcTask> task, Callback callback) override;

private:
    const QSharedPointer<AbstractJsonRequestsManager> m_jsonRequestsManager;
};
