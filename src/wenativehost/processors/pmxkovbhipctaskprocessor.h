#pragma once

#include <QObject>

#include <functional>
#include <memory>

class pmxKovBhIpcTask;
class pmxKovBhIpcTaskResponse;

/// Handles the tasks of one type. Belongs to the main thread.
class pmxKovBhIpcTaskProcessor : public QObject {
    Q_OBJECT
public:
    /// Takes the task and the answer to it.
    using Callback = std::function<void(std::shared_ptr<pmxKovBhIpcTask>,
                                        std::shared_ptr<pmxKovBhIpcTaskResponse>)>;

    explicit pmxKovBhIpcTaskProcessor(QObject *parent = nullptr) : QObject(parent) { }

    /// Calls back exactly once: before it returns, or later from the event loop.
    virtual void process(std::shared_ptr<pmxKovBhIpcTask> task, Callback callback) = 0;
};
