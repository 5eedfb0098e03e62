#pragma once

#include <QString>

#include <string_view>

/**
 * The file name in the value of a Content-Disposition field: "filename*" (RFC 8187) before
 * "filename" (RFC 6266), and besides what servers really send: names that are not quoted, quotes
 * that are not closed, names in raw UTF-8 or ISO 8859-1, percent-encoded ones, and encoded words
 * (RFC 2047). Only the last path segment is taken; control characters are dropped. Empty if none.
 */
QString fileNameFromContentDisposition(std::string_view value);
