#pragma once

#include <QThread>

#include <mutex>

/**
 * A thread that spends its time blocked in reads that nothing but input ends. Besides, it takes
 * queued signals and calls (see QueuedCallsDispatcher).
 *
 * It can be cut off only inside a Blocking section. Everywhere else it may hold a lock of an event
 * queue, and other threads would then wait for it forever.
 */
class ReadConsoleThread : public QThread {
    Q_OBJECT
public:
    /// Encloses a blocking read; an end of the thread that was asked for before takes effect here.
    class Blocking {
    public:
        Blocking() { setTerminationEnabled(true); }
        ~Blocking() { setTerminationEnabled(false); }
        Q_DISABLE_COPY_MOVE(Blocking)
    };

    explicit ReadConsoleThread(QObject *parent = nullptr);
    ~ReadConsoleThread() override;

    enum class Reading {
        /// The thread may be blocked in a read.
        MayBlock,
        /// It does not read any more, and never will: it ends by itself.
        Ended,
    };

    /// Ends the thread wherever it is and waits for that.
    void stop(Reading reading = Reading::MayBlock);

protected:
    void run() override;

private:
    bool isStopping();

    /// Held while the thread is being stopped: its event dispatcher must live as long.
    std::mutex m_stoppingMutex;
    bool m_stopping = false;
};
