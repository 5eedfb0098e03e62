#include "wildcardmatch.h"

#include <string_view>

namespace {

/// The characters are compared after "fold".
template <typename Fold> bool matches(std::string_view text, std::string_view mask, Fold fold)
{
    constexpr std::size_t None = std::string_view::npos;
    std::size_t t = 0;
    std::size_t m = 0;
    // Backtracks to the last "*" only: the piece before it matched as early as possible, which
    // leaves the most text for the rest.
    std::size_t lastStar = None;
    std::size_t textAtLastStar = 0;
    while (t < text.size()) {
        if (m < mask.size() && mask[m] == '*') {
            if (m + 1 == mask.size())
                return true;
            lastStar = m++;
            textAtLastStar = t;
        } else if (m < mask.size() && (mask[m] == '?' || fold(mask[m]) == fold(text[t]))) {
            ++t;
            ++m;
        } else if (lastStar != None) {
            m = lastStar + 1;
            t = ++textAtLastStar;
        } else {
            return false;
        }
    }
    return m == mask.size();
}

} // namespace

const char *strcmp_m(const char *str, const char *mask)
{
    return str && mask && matches(str, mask, [](char c) { return c; }) ? str : nullptr;
}

const char *strcmpi_m(const char *str, const char *mask)
{
    // Not std::tolower(), which does not change an "I" in a Turkish locale.
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
    return str && mask && matches(str, mask, lower) ? str : nullptr;
}
