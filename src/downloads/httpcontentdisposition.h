#pragma once

#include <QString>

#include <string_view>

/**
 * The file name in the value of a Content-Disposition field: "filename*" (RFC 8187) is preferred to
 * "filename" (RFC 6266). Also accepts what servers really send: unquoted names, unclosed quotes,
 * names in raw UTF-8 or ISO 8859-1, percent-encoded ones, and encoded words (RFC 2047). Only the
 * last path segment is used; control characters are dropped. Empty if there is none.
 */
QString fileNameFromContentDisposition(std::string_view value);
