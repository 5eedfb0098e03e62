#pragma once

#include <QByteArray>

#include <cstdio>
#include <sys/types.h>

/**
 * A file descriptor as a stream whose reader can be called off.
 *
 * A reader that waits for input when interrupt() is called, or that would wait afterwards, finds
 * the end of the input. One thread reads; any thread interrupts.
 */
class InterruptibleInput {
public:
    /// The descriptor stays the caller's. It may be in non-blocking mode.
    explicit InterruptibleInput(int fd);
    /// Nobody may read any more.
    ~InterruptibleInput();
    Q_DISABLE_COPY_MOVE(InterruptibleInput)

    std::FILE *file() const { return m_file; }
    void interrupt() const;

private:
    ssize_t read(char *buffer, size_t size) const;
    /// False when the reader is called off, or when waiting is not possible.
    bool waitForInput() const;

    const int m_fd;
    int m_interrupted = -1;
    QByteArray m_buffer;
    std::FILE *m_file = nullptr;
};
