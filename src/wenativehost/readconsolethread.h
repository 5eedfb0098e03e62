#pragma once

#include <QThread>

#include <mutex>

/**
 * A thread for what blocks in reads of an InterruptibleInput. Besides, it takes queued signals and
 * calls, and nothing else (see QueuedCallsDispatcher).
 */
class ReadConsoleThread : public QThread {
    Q_OBJECT
public:
    explicit ReadConsoleThread(QObject *parent = nullptr);
    /// Stops it.
    ~ReadConsoleThread() override;

    /// Ends the thread when it has handled the event that it is at, and waits for that. Its input
    /// has been interrupted before.
    void stop();

protected:
    void run() override;

private:
    bool isStopping();

    std::mutex m_mutex;
    bool m_stopping = false;
    bool m_hasDispatcher = false;
};
