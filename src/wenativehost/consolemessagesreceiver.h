#pragma once

#include "consoleframereader.h"

#include <QByteArray>
#include <QObject>
#include <QSharedPointer>
#include <QString>

#include <atomic>

class ConsoleFlowControl;

/**
 * Reads the browser's messages from standard input, one frame per iteration of its thread's event
 * loop.
 *
 * Lives in a thread of its own (see ReadConsoleThread), where it blocks while there is no input.
 * A change of the flags applies to all frames that arrive after it, including the one that the
 * reader is waiting for.
 */
class ConsoleMessagesReceiver : public QObject {
    Q_OBJECT
public:
    enum Flag : quint32 {
        /// Bodies are percent-encoded.
        PercentEncoded = 1,
        /// Bodies are encoded in Base64; PercentEncoded is then ignored.
        Base64Encoded = 2,
        /// Lengths are decimal texts, each followed by a space, instead of four bytes.
        TextLength = 4,
    };

    explicit ConsoleMessagesReceiver(QObject *parent = nullptr, std::FILE *input = stdin);

    /// Call it before start(): reading then waits while too much is unhandled.
    void setFlowControl(QSharedPointer<ConsoleFlowControl> flowControl);

public Q_SLOTS:
    /// Starts reading, until the input ends. Any thread.
    void start();
    /// Sets or clears the bits given. Any thread.
    void enableFlags(quint32 flags, bool enable);
    /// Reads one frame, and schedules reading the next one.
    void receive();

Q_SIGNALS:
    /// A frame's body, decoded. Empty when there was not enough memory for it.
    void gotMessage(const QString &message);
    /// The same in UTF-8: invalid bytes are replaced as in QString. A slot may move the bytes out,
    /// so that they need not stay in memory until the signal has been handled. A signal without
    /// connections is not emitted, which saves its conversion.
    void gotBytes(const QSharedPointer<QByteArray> &message);
    /// The input has ended or cannot be read. Emitted once.
    void finished();

private:
    void handleBody(QByteArray body);
    static QByteArray decoded(const QByteArray &body, quint32 flags);

    std::FILE *const m_input;
    ConsoleFrameReader m_reader;
    QSharedPointer<ConsoleFlowControl> m_flowControl;
    bool m_running = false;
    bool m_inputEnded = false;
    std::atomic<quint32> m_flags = 0;
};
