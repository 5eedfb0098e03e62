#pragma once

#include <QThread>

#include <mutex>

/**
 * A thread that mostly blocks in reads that cannot be interrupted. In between it handles queued
 * signals and calls (see QueuedCallsDispatcher).
 *
 * It can be terminated only inside a Blocking section. Anywhere else it may hold the lock of an
 * event queue, and other threads would then wait for it forever.
 */
class ReadConsoleThread : public QThread {
    Q_OBJECT
public:
    /// RAII: encloses a blocking read. If the thread was asked to end before, it ends here.
    class Blocking {
    public:
        Blocking() { setTerminationEnabled(true); }
        ~Blocking() { setTerminationEnabled(false); }
        Q_DISABLE_COPY_MOVE(Blocking)
    };

    explicit ReadConsoleThread(QObject *parent = nullptr);
    ~ReadConsoleThread() override;

    /// Called in the thread itself, when it has stopped reading for good: it then ends as soon as
    /// the current call or signal has been handled.
    void endByItself();
    /// Ends the thread, whatever it is doing, and waits for its end.
    void stop();

protected:
    void run() override;

private:
    bool isStopping();

    /// Held while the thread is being told to stop, to keep its event dispatcher alive.
    std::mutex m_stoppingMutex;
    bool m_stopping = false;
};
