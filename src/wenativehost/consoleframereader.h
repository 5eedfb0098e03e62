#pragma once

#include <QByteArray>

#include <cstdio>
#include <optional>

/**
 * Cuts one frame after another out of a stream: a length, then as many bytes.
 *
 * Blocks until they are there. Memory grows with the bytes that arrive, not with the length that a
 * frame announces.
 */
class ConsoleFrameReader {
public:
    enum class LengthForm {
        /// Four bytes in the machine's byte order, as browsers frame native messages.
        Binary,
        /// Decimal digits and one space.
        Text,
    };

    /// The stream stays the caller's.
    explicit ConsoleFrameReader(std::FILE *input);

    /// In bytes. Nothing at the end of the input, when it cannot be read, and for a length in text
    /// form that is 0 or not a number. A text is read as strtol() reads it, white space before the
    /// digits and a sign included, and cut to 32 bits.
    std::optional<quint32> readLength(LengthForm form);

    /// Nothing when the input ends first. Empty when there is not enough memory for so many bytes;
    /// they are skipped then.
    std::optional<QByteArray> readBody(quint32 length);

private:
    std::optional<quint32> readTextLength();
    bool skip(qsizetype count);

    std::FILE *const m_input;
};
