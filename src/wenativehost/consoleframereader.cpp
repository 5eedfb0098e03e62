#include "consoleframereader.h"

#include "qtappdefaultlogger.h"

#include <algorithm>
#include <array>
#include <limits>
#include <new>

namespace {

/// Parses a number like strtol() in base 10, but one character at a time, so that an endless text
/// takes no memory.
class DecimalText {
public:
    void append(char character)
    {
        if (m_state == State::Blanks && isBlank(character))
            return;
        if (m_state == State::Blanks && (character == '-' || character == '+')) {
            m_negative = character == '-';
            m_state = State::Digits;
        } else if (m_state != State::Rest && character >= '0' && character <= '9') {
            m_state = State::Digits;
            appendDigit(static_cast<quint64>(character - '0'));
        } else {
            m_state = State::Rest;
        }
    }

    quint32 low32Bits() const
    {
        return static_cast<quint32>(m_negative ? quint64{0} - m_magnitude : m_magnitude);
    }

private:
    enum class State { Blanks, Digits, Rest };

    /// Without the space, which ends the text.
    static bool isBlank(char character) { return character >= '\t' && character <= '\r'; }

    void appendDigit(quint64 digit)
    {
        const quint64 limit =
            static_cast<quint64>(std::numeric_limits<long>::max()) + (m_negative ? 1 : 0);
        m_magnitude = m_magnitude > (limit - digit) / 10 ? limit : m_magnitude * 10 + digit;
    }

    State m_state = State::Blanks;
    bool m_negative = false;
    quint64 m_magnitude = 0;
};

/// The size of the first buffer for a body; it then doubles as the body arrives.
constexpr qsizetype firstPiece = qsizetype{64} * 1024;

} // namespace

ConsoleFrameReader::ConsoleFrameReader(std::FILE *input) : m_input(input) { }

// The thread is terminated inside these functions. Its stack is then unwound without leaving their
// frames, so the address sanitizer's redzones around their variables would stay poisoned.
[[gnu::no_sanitize_address]] std::optional<quint32> ConsoleFrameReader::readLength(LengthForm form)
{
    if (form == LengthForm::Text)
        return readTextLength();
    quint32 length = 0;
    if (std::fread(&length, sizeof length, 1, m_input) != 1)
        return std::nullopt;
    return length;
}

[[gnu::no_sanitize_address]] std::optional<quint32> ConsoleFrameReader::readTextLength()
{
    DecimalText text;
    for (int character = std::getc(m_input); character != EOF && character != ' ';
         character = std::getc(m_input))
        text.append(static_cast<char>(character));
    const quint32 length = text.low32Bits();
    return length != 0 ? std::optional(length) : std::nullopt;
}

[[gnu::no_sanitize_address]] std::optional<QByteArray> ConsoleFrameReader::readBody(quint32 length)
{
    QByteArray body;
    qsizetype got = 0;
    try {
        while (got < length) {
            body.resize(std::min<qsizetype>(length, std::max(firstPiece, 2 * got)));
            const qsizetype wanted = body.size() - got;
            const auto read = static_cast<qsizetype>(
                std::fread(body.data() + got, 1, static_cast<size_t>(wanted), m_input));
            if (read < wanted)
                return std::nullopt;
            got += read;
        }
    } catch (const std::bad_alloc &) {
        body = QByteArray();
        logLine(1,
                QStringLiteral("[ConsoleFrameReader]: WARNING: a message of %1 bytes is dropped: "
                               "not enough memory")
                    .arg(length));
        return skip(length - got) ? std::optional(QByteArray()) : std::nullopt;
    }
    return body;
}

[[gnu::no_sanitize_address]] bool ConsoleFrameReader::skip(qsizetype count)
{
    std::array<char, 16384> piece{};
    while (count > 0) {
        const auto wanted = static_cast<size_t>(std::min<qsizetype>(count, piece.size()));
        if (std::fread(piece.data(), 1, wanted, m_input) < wanted)
            return false;
        count -= static_cast<qsizetype>(wanted);
    }
    return true;
}
