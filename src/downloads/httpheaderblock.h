#pragma once

#include <QString>
#include <QtGlobal>

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// "type/subtype" with its parameters (RFC 9110, 8.3.1), all names in lower case.
struct HttpMediaType {
    std::string name;
    std::vector<std::pair<std::string, std::string>> parameters;

    /// The value of the first parameter of that name (lower case), or an empty text.
    std::string parameter(std::string_view parameterName) const;
};

/// A Content-Range field in the unit "bytes" (RFC 9110, 14.4). Positions are inclusive.
struct HttpContentRange {
    std::optional<quint64> first;
    std::optional<quint64> last;
    std::optional<quint64> total;
};

/**
 * The header fields of an HTTP message, from the text that browsers report: "Name: value" lines,
 * with or without the message's first line.
 *
 * Any bytes are accepted; a line that is no header field is skipped. Names are case-insensitive.
 * Linear in the length of the text.
 */
class HttpHeaderBlock {
public:
    HttpHeaderBlock() = default;
    explicit HttpHeaderBlock(std::string_view text);

    /// Adds a field that was parsed already.
    void add(std::string_view name, std::string_view value);

    bool isEmpty() const { return m_fields.empty(); }
    bool contains(std::string_view name) const;
    /// The values of all fields of that name, in order.
    std::vector<std::string> values(std::string_view name) const;
    /// The same as one text, joined as RFC 9110, 5.3 allows: with ", ", and with "; " for Cookie.
    /// Empty if there is no such field. Not for Set-Cookie, whose values cannot be joined.
    std::string value(std::string_view name) const;

    /// Content-Type; of repeated fields the last valid one counts, as in browsers.
    std::optional<HttpMediaType> mediaType() const;
    /// Content-Length; nothing if it is no 64-bit number, or if repeated fields differ.
    std::optional<quint64> contentLength() const;
    /// Content-Range; nothing if it is malformed or contradicts itself. A total that is no number
    /// is unknown.
    std::optional<HttpContentRange> contentRange() const;
    /// The file name that Content-Disposition suggests (RFC 6266, RFC 8187 and the broken forms
    /// that browsers accept), without any folder and control characters; empty if there is none.
    QString fileName() const;

private:
    struct Field {
        std::string lowerCaseName;
        std::string value;
    };
    std::vector<Field> m_fields;
};
