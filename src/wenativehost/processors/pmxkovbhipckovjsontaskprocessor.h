#pragma once

#include "pmxkovbhipctaskprocessor.h"

#include <QSharedPointer>

class AbstractJsonRequestsManager;

/**
 * "kov_json_task": passes a JSON text on to the main application, as a request with the task's id.
 * Answered at once; the application's answer is not passed on.
 */
class pmxKovBhIpcKovJsonTaskProcessor : public pmxKovBhIpcTaskProcessor {
    Q_OBJECT
public:
    explicit pmxKovBhIpcKovJsonTaskProcessor(
        QSharedPointer<AbstractJsonRequestsManager> jsonRequestsManager);

    /// Throws, with the text "stoll", std::invalid_argument if the id does not begin with a decimal
    /// number, and std::out_of_range if that does not fit into 64 bits (signed).
    void process(std::shared_ptr<pmxKovBhIpcTask> task, Callback callback) override;

private:
    const QSharedPointer<AbstractJsonRequestsManager> m_jsonRequestsManager;
};
