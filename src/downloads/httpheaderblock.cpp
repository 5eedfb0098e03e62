#include "httpheaderblock.h"

#include "httpcontentdisposition.h"
#include "httpparameters.h"

#include <algorithm>
#include <charconv>

namespace {

/// RFC 9110, 5.6.2.
bool isTokenCharacter(char c)
{
    constexpr std::string_view punctuation = "!#$%&'*+-.^_`|~";
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z')
        || punctuation.find(c) != std::string_view::npos;
}

bool isToken(std::string_view text)
{
    return !text.empty() && std::all_of(text.begin(), text.end(), isTokenCharacter);
}

std::string_view takeLine(std::string_view &rest)
{
    const size_t end = rest.find('\n');
    std::string_view line = rest.substr(0, end);
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    if (line.ends_with('\r'))
        line.remove_suffix(1);
    return line;
}

std::optional<quint64> toNumber(std::string_view digits)
{
    quint64 number = 0;
    const char *const end = digits.data() + digits.size();
    const auto [stopped, error] = std::from_chars(digits.data(), end, number);
    if (error != std::errc() || stopped != end)
        return std::nullopt;
    return number;
}

} // namespace

std::string HttpMediaType::parameter(std::string_view parameterName) const
{
    const auto found = std::find_if(parameters.begin(), parameters.end(),
                                    [&](const auto &p) { return p.first == parameterName; });
    return found == parameters.end() ? std::string() : found->second;
}

HttpHeaderBlock::HttpHeaderBlock(std::string_view text)
{
    std::string_view rest = text;
    bool continues = false;
    while (!rest.empty()) {
        const std::string_view line = takeLine(rest);
        if (continues && (line.starts_with(' ') || line.starts_with('\t'))) {
            // A folded line (RFC 9112, 5.2) is joined with one space.
            if (const std::string_view more = trimmedHttpSpace(line); !more.empty())
                m_fields.back().value.append(1, ' ').append(more);
            continue;
        }
        const size_t colon = line.find(':');
        continues = colon != std::string_view::npos && isToken(line.substr(0, colon));
        if (continues)
            add(line.substr(0, colon), line.substr(colon + 1));
    }
}

void HttpHeaderBlock::add(std::string_view name, std::string_view value)
{
    m_fields.push_back({asciiLowerCase(name), std::string(trimmedHttpSpace(value))});
}

bool HttpHeaderBlock::contains(std::string_view name) const
{
    const std::string wanted = asciiLowerCase(name);
    return std::any_of(m_fields.begin(), m_fields.end(),
                       [&](const Field &field) { return field.lowerCaseName == wanted; });
}

std::vector<std::string> HttpHeaderBlock::values(std::string_view name) const
{
    const std::string wanted = asciiLowerCase(name);
    std::vector<std::string> found;
    for (const Field &field : m_fields) {
        if (field.lowerCaseName == wanted)
            found.push_back(field.value);
    }
    return found;
}

std::string HttpHeaderBlock::value(std::string_view name) const
{
    const std::string_view separator = asciiLowerCase(name) == "cookie" ? "; " : ", ";
    std::string joined;
    bool first = true;
    for (const std::string &one : values(name)) {
        if (!first)
            joined += separator;
        joined += one;
        first = false;
    }
    return joined;
}

std::optional<HttpMediaType> HttpHeaderBlock::mediaType() const
{
    std::optional<HttpMediaType> last;
    for (const std::string &text : values("content-type")) {
        const std::string_view view = text;
        const size_t semicolon = view.find(';');
        const std::string_view name = trimmedHttpSpace(view.substr(0, semicolon));
        const size_t slash = name.find('/');
        if (slash == std::string_view::npos || !isToken(name.substr(0, slash))
            || !isToken(name.substr(slash + 1)))
            continue;
        HttpMediaType type{asciiLowerCase(name), {}};
        if (semicolon != std::string_view::npos)
            type.parameters = httpParameters(view.substr(semicolon + 1));
        last = std::move(type);
    }
    return last;
}

std::optional<quint64> HttpHeaderBlock::contentLength() const
{
    std::optional<quint64> length;
    const std::string joined = value("content-length");
    std::string_view rest = joined;
    while (!rest.empty()) {
        const size_t comma = rest.find(',');
        const auto number = toNumber(trimmedHttpSpace(rest.substr(0, comma)));
        // The same number more than once is tolerated (RFC 9110, 8.6).
        if (!number || (length && *length != *number))
            return std::nullopt;
        length = number;
        rest.remove_prefix(comma == std::string_view::npos ? rest.size() : comma + 1);
    }
    return length;
}

std::optional<HttpContentRange> HttpHeaderBlock::contentRange() const
{
    const std::string text = value("content-range");
    std::string_view rest = text;
    const size_t blank = rest.find(' ');
    const size_t slash = rest.find('/', blank);
    if (slash == std::string_view::npos || asciiLowerCase(rest.substr(0, blank)) != "bytes")
        return std::nullopt;
    const std::string_view range = trimmedHttpSpace(rest.substr(blank, slash - blank));
    const std::string_view total = trimmedHttpSpace(rest.substr(slash + 1));
    HttpContentRange result;
    result.total = toNumber(total); // what is no number is as unknown as "*" is
    if (range != "*") {
        const size_t dash = range.find('-');
        if (dash == std::string_view::npos)
            return std::nullopt;
        result.first = toNumber(trimmedHttpSpace(range.substr(0, dash)));
        result.last = toNumber(trimmedHttpSpace(range.substr(dash + 1)));
        if (!result.first || !result.last || *result.last < *result.first
            || (result.total && *result.last >= *result.total))
            return std::nullopt;
    }
    if (!result.first && !result.total)
        return std::nullopt;
    return result;
}

QString HttpHeaderBlock::fileName() const
{
    for (const std::string &disposition : values("content-disposition")) {
        if (QString name = fileNameFromContentDisposition(disposition); !name.isEmpty())
            return name;
    }
    return {};
}
