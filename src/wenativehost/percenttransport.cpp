#include "percenttransport.h"

#include <algorithm>

namespace {

bool isLetterOrDigit(char c)
{
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

/// -1 for any character other than a hexadecimal digit.
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

QByteArray PercentTransport::encode(const QByteArray &bytes)
{
    static constexpr char hexDigits[] = "0123456789ABCDEF";
    const auto kept = std::count_if(bytes.cbegin(), bytes.cend(), isLetterOrDigit);
    QByteArray text(kept + (bytes.size() - kept) * 3, Qt::Uninitialized);
    char *out = text.data();
    for (const char c : bytes) {
        if (isLetterOrDigit(c)) {
            *out++ = c;
        } else {
            const auto byte = static_cast<unsigned char>(c);
            *out++ = '%';
            *out++ = hexDigits[byte >> 4];
            *out++ = hexDigits[byte & 0xf];
        }
    }
    return text;
}

QByteArray PercentTransport::decode(const QByteArray &text)
{
    QByteArray bytes(text.size(), Qt::Uninitialized);
    char *out = bytes.data();
    const char *in = text.constData();
    const char *const end = in + text.size();
    while (end - in >= 3) {
        const int high = *in == '%' ? hexValue(in[1]) : -1;
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
