#include "hexpairs.h"

#include <algorithm>

namespace {

/// -1 for what is no hexadecimal digit.
int hexValue(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    return -1;
}

} // namespace

QByteArray decodedHexPairs(QByteArrayView text, char marker)
{
    QByteArray bytes(text.size(), Qt::Uninitialized);
    char *out = bytes.data();
    const char *in = text.data();
    const char *const end = in + text.size();
    while (end - in >= 3) {
        const int high = *in == marker ? hexValue(in[1]) : -1;
        const int low = high >= 0 ? hexValue(in[2]) : -1;
        if (low >= 0) {
            *out++ = static_cast<char>(high << 4 | low);
            in += 3;
        } else {
            *out++ = *in++;
        }
    }
    out = std::copy(in, end, out);
    bytes.truncate(out - bytes.constData());
    return bytes;
}
