#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>

#include <cstdio>

/**
 * Writes messages to the browser on standard output, which belongs to nobody else.
 *
 * Every message is written whole and flushed before the call returns; calls from other threads are
 * queued to the sender's own. What cannot be written is logged and otherwise ignored: when the
 * browser is gone, the end of standard input ends the program.
 */
class ConsoleMessagesSender : public QObject {
    Q_OBJECT
public:
    enum Flag : quint32 {
        /// A carriage return and a line feed follow each body, not counted in its length.
        AddCrLf = 1,
        /// Lengths are decimal texts, each ended by a space, instead of four bytes.
        TextLength = 2,
        /// Bodies are percent-encoded.
        PercentEncode = 4,
        /// Bodies are encoded in Base64; PercentEncode is then ignored.
        Base64Encode = 8,
    };

    explicit ConsoleMessagesSender(QObject *parent = nullptr, std::FILE *output = stdout);

public Q_SLOTS:
    /// Sets or clears the bits given. Any thread.
    void enableFlags(quint32 flags, bool enable);
    /// Any thread.
    void sendMessage(const QString &message);

private:
    QByteArray encoded(const QString &message) const;
    void writeLength(quint32 size);

    std::FILE *const m_output;
    quint32 m_flags = 0;
};
