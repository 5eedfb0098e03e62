// A browser's cookie text, from any page. The first byte is the separator.

#include "cookiestring.h"
#include "require.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size == 0)
        return 0;
    const QChar separator(ushort{data[0]});
    const QString text = QString::fromUtf8(reinterpret_cast<const char *>(data) + 1,
                                           static_cast<qsizetype>(size) - 1);
    const QByteArray utf8 = text.toUtf8();
    const QList<QNetworkCookie> cookies = cookiesFromString(text, separator);
    for (const QNetworkCookie &cookie : cookies) {
        require(!cookie.name().contains('='));
        require(utf8.contains(cookie.name() + '=' + cookie.value()));
    }
    require(cookiesFromString(cookiesToString(cookies, separator), separator) == cookies);
    return 0;
}
