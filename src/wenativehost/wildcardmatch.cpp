#include "wildcardmatch.h"

namespace {

/// The characters are compared after "fold".
template <typename Fold> bool matches(const char *text, const char *mask, Fold fold)
{
    // Backtracks to the last "*" only: the piece before it matched as early as possible, which
    // leaves the most text for the rest.
    const char *lastStar = nullptr;
    const char *textAtLastStar = nullptr;
    while (*text) {
        if (*mask == '*') {
            lastStar = mask++;
            textAtLastStar = text;
        } else if (*mask == '?' || fold(*mask) == fold(*text)) {
            ++text;
            ++mask;
        } else if (lastStar) {
            mask = lastStar + 1;
            text = ++textAtLastStar;
        } else {
            return false;
        }
    }
    return !*mask;
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
