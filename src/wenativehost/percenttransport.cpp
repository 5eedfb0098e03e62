#include "percenttransport.h"

#include "hexpairs.h"

#include <algorithm>

namespace {

bool isLetterOrDigit(char c)
{
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
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

QByteArray PercentTransport::decode(const QByteArray &text) { return decodedHexPairs(text, '%'); }
