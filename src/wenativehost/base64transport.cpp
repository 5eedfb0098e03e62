#include "base64transport.h"

#include <array>
#include <string_view>

namespace {

constexpr int notInAlphabet = -1;

constexpr std::array<int, 256> alphabetValues = [] {
    constexpr std::string_view alphabet =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::array<int, 256> values = {};
    values.fill(notInAlphabet);
    for (size_t i = 0; i < alphabet.size(); ++i)
        values[static_cast<unsigned char>(alphabet[i])] = static_cast<int>(i);
    return values;
}();

int sextet(char character) { return alphabetValues[static_cast<unsigned char>(character)]; }

} // namespace

QByteArray Base64Transport::encode(const QByteArray &bytes) { return bytes.toBase64(); }

QByteArray Base64Transport::decode(const QByteArray &text)
{
    // The end of the text is treated like a zero byte, which is outside the alphabet.
    const auto at = [&text](qsizetype i) { return i < text.size() ? text.at(i) : '\0'; };

    QByteArray bytes(text.size() / 4 * 3 + 3, Qt::Uninitialized);
    char *out = bytes.data();
    for (qsizetype i = 0;; i += 4) {
        const int first = sextet(at(i));
        if (first == notInAlphabet)
            break;
        const int second = sextet(at(i + 1));
        if (second == notInAlphabet)
            return {};
        *out++ = static_cast<char>(first << 2 | second >> 4);
        if (at(i + 2) == '=') {
            if (at(i + 3) != '=')
                return {};
            break;
        }
        const int third = sextet(at(i + 2));
        if (third == notInAlphabet)
            return {};
        *out++ = static_cast<char>(second << 4 | third >> 2);
        if (at(i + 3) == '=')
            break;
        const int fourth = sextet(at(i + 3));
        if (fourth == notInAlphabet)
            return {};
        *out++ = static_cast<char>(third << 6 | fourth);
    }
    bytes.truncate(out - bytes.constData());
    return bytes;
}
