#pragma once

#include "consoleframereader.h"

#include <QByteArray>
#include <QObject>
#include <QSharedPointer>
#include <QString>

#include <atomic>

class ConsoleFlowControl;

/**
 * Reads the browser's messages from standard input, one frame per turn of its thread's event loop.
 *
 * Lives in a thread of its own (see ReadConsoleThread), where it blocks while there is no input.
 * A change of the flags holds for every frame that arrives after it, the one that is being waited
 * for included.
 */
class ConsoleMessagesReceiver : public QObject {
    Q_OBJECT
public:
    enum Flag : quint32 {
        /// Bodies are percent-encoded.
        PercentEncoded = 1,
        /// Bodies are encoded in Base64; PercentEncoded is then ignored.
        Base64Encoded = 2,
        /// Lengths are decimal texts, each ended by a space, instead of four bytes.
        TextLength = 4,
    };

    explicit ConsoleMessagesReceiver(QObject *parent = nullptr, std::FILE *input = stdin);

    /// Before start(): reading waits while too much is unhandled. Without it, it never does.
    void setFlowControl(QSharedPointer<ConsoleFlowControl> flowControl);

    /// Whether the input has ended, and nothing is read any more. Any thread.
    bool hasInputEnded() const { return m_inputEnded; }

public Q_SLOTS:
    /// Begins to read, until the input ends. Any thread.
    void start();
    /// Sets or clears the bits given. Any thread.
    void enableFlags(quint32 flags, bool enable);
    /// Reads one frame and sees to it that the next one is read.
    void receive();

Q_SIGNALS:
    /// A frame's body, decoded. Empty when there was not enough memory for it.
    void gotMessage(const QString &message);
    /// The same in UTF-8: what is no UTF-8 is replaced as QString does it. Who takes the bytes away
    /// saves that they stay until the signal has been handled. Whoever connects to only one of the
    /// two signals saves the making of the other.
    void gotBytes(const QSharedPointer<QByteArray> &message);
    /// The input has ended or cannot be read. Once.
    void finished();

private:
    void handleBody(QByteArray body);
    static QByteArray decoded(const QByteArray &body, quint32 flags);

    std::FILE *const m_input;
    ConsoleFrameReader m_reader;
    QSharedPointer<ConsoleFlowControl> m_flowControl;
    bool m_running = false;
    std::atomic<quint32> m_flags = 0;
    std::atomic<bool> m_inputEnded = false;
};
