#include "domainfromhttpurl.h"

#include <string_view>

std::string domainFromHttpUrl(const std::string &url)
{
    constexpr std::string_view LineBreaks = "\n\r";
    constexpr std::string_view Delimiters = "/?#:";
    constexpr std::size_t None = std::string::npos;
    const auto beginsName = [&url, Delimiters](std::size_t at) {
        return at < url.size() && Delimiters.find(url[at]) == None;
    };

    // There must be no line break before the slashes.
    std::size_t slashes = url.rfind("//", url.find_first_of(LineBreaks));
    while (slashes != None && !beginsName(slashes + 2))
        slashes = slashes > 0 ? url.rfind("//", slashes - 1) : None;
    if (slashes == None)
        return {};

    // Nor after the name, though the name itself may contain one.
    const std::size_t begin = slashes + 2;
    const std::size_t end = url.find_first_of(Delimiters, begin);
    if (end != None && url.find_first_of(LineBreaks, end) != None)
        return {};
    return url.substr(begin, end == None ? None : end - begin);
}
