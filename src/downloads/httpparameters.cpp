#include "httpparameters.h"

#include <algorithm>

namespace {

/// Reads from just after the opening quote; leaves rest after the closing one.
std::string takeQuotedString(std::string_view &rest)
{
    std::string value;
    size_t at = 0;
    for (; at < rest.size() && rest[at] != '"'; ++at) {
        // Only quotes and backslashes need an escape. Any other backslash is part of a Windows
        // path, whose folders are removed later.
        const std::string_view next = rest.substr(at + 1, 1);
        if (rest[at] == '\\' && (next == "\"" || next == "\\"))
            ++at;
        value += rest[at];
    }
    rest.remove_prefix(std::min(at + 1, rest.size()));
    return value;
}

} // namespace

std::string_view trimmedHttpSpace(std::string_view text)
{
    constexpr std::string_view space = " \t";
    const size_t begin = text.find_first_not_of(space);
    if (begin == std::string_view::npos)
        return {};
    return text.substr(begin, text.find_last_not_of(space) - begin + 1);
}

std::string asciiLowerCase(std::string_view text)
{
    std::string lower(text);
    for (char &c : lower) {
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    }
    return lower;
}

std::vector<std::pair<std::string, std::string>> httpParameters(std::string_view text)
{
    std::vector<std::pair<std::string, std::string>> parameters;
    std::string_view rest = text;
    while (!rest.empty()) {
        const size_t nameEnd = rest.find_first_of("=;");
        if (nameEnd == std::string_view::npos)
            break;
        std::string name = asciiLowerCase(trimmedHttpSpace(rest.substr(0, nameEnd)));
        const bool hasValue = rest[nameEnd] == '=';
        rest.remove_prefix(nameEnd + 1);
        if (!hasValue)
            continue;
        const size_t valueBegin = rest.find_first_not_of(" \t");
        rest.remove_prefix(valueBegin == std::string_view::npos ? rest.size() : valueBegin);
        std::string value;
        if (rest.starts_with('"')) {
            rest.remove_prefix(1);
            value = takeQuotedString(rest);
            const size_t next = rest.find(';');
            rest.remove_prefix(next == std::string_view::npos ? rest.size() : next + 1);
        } else {
            const size_t end = rest.find(';');
            value = trimmedHttpSpace(rest.substr(0, end));
            rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
        }
        if (!name.empty())
            parameters.emplace_back(std::move(name), std::move(value));
    }
    return parameters;
}
