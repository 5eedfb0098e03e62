#pragma once

#include <QString>
#include <QUrl>

/**
 * Makes names of files out of what others suggest. A result is one path component that any file
 * system takes: no folder, no control or formatting character, nothing that begins with a dot or
 * ends with a dot or space, at most maxBytes bytes of UTF-8, never empty.
 */
namespace KovFileName {

/// File systems allow 255; the rest is for a number and for the suffix of a partial file.
constexpr int maxBytes = 200;

/// Nothing when no name is left of the suggestion.
QString sanitized(const QString &suggestion);
/// The last path segment of the URL, else "download".
QString fromUrl(const QUrl &url);
/// "name.ext" for 1, "name (2).ext" for 2, and so on.
QString numbered(const QString &name, int number);

} // namespace KovFileName
