#pragma once

#include <QByteArray>

#include <cstdio>
#include <optional>

/**
 * Reads frames from a stream: a length, then as many bytes.
 *
 * Blocks until they have arrived. Memory is allocated for the bytes that arrive, not for the length
 * that a frame announces.
 */
class ConsoleFrameReader {
public:
    enum class LengthForm {
        /// Four bytes in the machine's byte order, as browsers frame native messages.
        Binary,
        /// Decimal digits and one space.
        Text,
    };

    /// The caller keeps the ownership of the stream.
    explicit ConsoleFrameReader(std::FILE *input);

    /// In bytes. Nothing at the end of the input, if it cannot be read, and for a length in text
    /// form that is 0 or not a number. A text is parsed like strtol() does, with leading white
    /// space and a sign, and truncated to 32 bits.
    std::optional<quint32> readLength(LengthForm form);

    /// Nothing if the input ends first. Empty if there is not enough memory for so many bytes; then
    /// they are skipped.
    std::optional<QByteArray> readBody(quint32 length);

private:
    std::optional<quint32> readTextLength();
    bool skip(qsizetype count);

    std::FILE *const m_input;
};
