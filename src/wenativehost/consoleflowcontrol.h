#pragma once

#include <QObject>

#include <atomic>

/**
 * Flow control between the two ends of the console: back-pressure from the thread that handles
 * messages to the one that reads them, so that a browser that sends faster than it reads answers
 * does not cost memory without bound; and, in the other direction, the end of the input.
 *
 * Belongs to the thread that handles messages. The functions may be called from any thread, those
 * for the reader from one thread only.
 */
class ConsoleFlowControl : public QObject {
    Q_OBJECT
public:
    /// The memory in bytes that messages which were read but not handled may take before the reader
    /// waits. A single message may take more.
    static constexpr qint64 maxUnhandledBytes = qint64{4} * 1024 * 1024;

    explicit ConsoleFlowControl(QObject *parent = nullptr);
    ~ConsoleFlowControl() override;
    Q_DISABLE_COPY_MOVE(ConsoleFlowControl)

    /// The reader has just posted a message of so many bytes to the handling thread.
    void posted(qsizetype bytes);
    /// The reader waits until there is room, and meanwhile watches the input for its end.
    void waitForRoom(int inputDescriptor);

    /// The peer has closed its end; there may still be unread data.
    void setInputEnded();
    bool isInputEnded() const { return m_inputEnded; }

private:
    void handled(qint64 bytes);

    std::atomic<qint64> m_unhandledBytes = 0;
    /// Posted bytes that were not yet announced to the handling thread.
    qint64 m_unannouncedBytes = 0;
    std::atomic<bool> m_inputEnded = false;
    std::atomic<bool> m_waiting = false;
    /// An eventfd(2), readable when there is room again; -1 when there is none to be had.
    const int m_roomEvent;
};
