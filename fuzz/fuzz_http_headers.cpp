// A block of HTTP header fields, from any server through a browser.

#include "httpheaderblock.h"
#include "require.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::string_view text(reinterpret_cast<const char *>(data), size);
    const HttpHeaderBlock headers(text);

    for (const std::string_view name : {"content-type", "Cookie", "referer", ""}) {
        const std::string value = headers.value(name);
        require(value.empty() || headers.contains(name));
        require(headers.values(name).empty() == !headers.contains(name));
        require(value.find('\n') == std::string::npos);
    }
    if (const auto type = headers.mediaType()) {
        require(type->name.find('/') != std::string::npos);
        require(type->parameter("codecs").size() <= size);
    }
    headers.contentLength();
    if (const auto range = headers.contentRange()) {
        require(range->first.has_value() == range->last.has_value());
        require(!range->first || *range->first <= *range->last);
        require(!range->total || !range->last || *range->last < *range->total);
    }
    const QString fileName = headers.fileName();
    require(fileName != u"." && fileName != u"..");
    for (const QChar c : fileName)
        require(c != u'/' && c != u'\\' && c != u'\0');
    return 0;
}
