#pragma once

#include <QByteArrayView>
#include <QObject>
#include <QSharedPointer>
#include <QString>

#include <sys/types.h>

#include <chrono>
#include <cstdio>
#include <memory>
#include <string>

class ConsoleFlowControl;

/**
 * Writes messages to the browser on standard output; nothing else writes there.
 *
 * Every message is written completely and flushed before the call returns, however long the browser
 * takes to read it; calls from other threads are queued to the sender's own. Failures are logged,
 * once for consecutive messages, and otherwise ignored: when the browser is gone, the end of
 * standard input ends the program.
 */
class ConsoleMessagesSender : public QObject {
    Q_OBJECT
public:
    enum Flag : quint32 {
        /// A carriage return and a line feed follow each body, not counted in its length.
        AddCrLf = 1,
        /// Lengths are decimal texts, each followed by a space, instead of four bytes.
        TextLength = 2,
        /// Bodies are percent-encoded.
        PercentEncode = 4,
        /// Bodies are encoded in Base64; PercentEncode is then ignored.
        Base64Encode = 8,
    };

    explicit ConsoleMessagesSender(QObject *parent = nullptr, std::FILE *output = stdout);
    ~ConsoleMessagesSender() override;
    Q_DISABLE_COPY_MOVE(ConsoleMessagesSender)

    /// How long writes wait for a reader once the input has ended, in milliseconds: at a time, and
    /// in total. After that, nothing more is written.
    static constexpr int writeTimeoutMs = 400;
    static constexpr int totalWriteTimeoutMs = 1200;

    /// Says when the input has ended; without it, a blocked write waits forever. Where the output
    /// is "stdout", replaces that variable by a stream whose writes can be given up.
    void setFlowControl(QSharedPointer<ConsoleFlowControl> flowControl);

public Q_SLOTS:
    /// Sets or clears the bits given. Any thread.
    void enableFlags(quint32 flags, bool enable);
    /// Any thread.
    void sendMessage(const QString &message);
    /// The same of a text in UTF-8, without a detour by QString; what is no UTF-8 is replaced as
    /// QString does it. Any thread.
    void sendUtf8(const std::string &message);

private:
    enum class Channel {
        Working,
        /// The last message could not be written; that was logged.
        Failing,
        /// The output is given up: a write was blocked after the input had ended.
        Abandoned,
    };

    void sendText(QByteArrayView text);
    void writeLength(quint32 size);
    void writeBody(QByteArrayView body);
    std::FILE *stream() const;
    /// Writes to the output's descriptor, and returns the number of written bytes; fewer if that
    /// failed or was given up.
    qint64 writeOut(const char *data, qint64 size);
    /// Writes what there is room for, which saves a poll(2) for each message. Nothing or -1 if
    /// there is none, and if the kernel cannot do that: for pipes, Linux can since 6.4.
    ssize_t writeWithoutBlocking(const char *data, size_t size);
    bool waitUntilWritable();
    void onWriteFailed(int error);

    struct Closer {
        void operator()(std::FILE *file) const { std::fclose(file); }
    };

    std::FILE *const m_output;
    QSharedPointer<ConsoleFlowControl> m_flowControl;
    quint32 m_flags = 0;
    Channel m_channel = Channel::Working;
    bool m_canWriteWithoutBlocking = true;
    /// How long writes have waited since the input ended.
    std::chrono::nanoseconds m_waited{};
    /// With flow control, used instead of the output's own stream: its bytes go to writeOut(),
    /// which needs the members above.
    std::unique_ptr<std::FILE, Closer> m_pieceByPiece;
};
