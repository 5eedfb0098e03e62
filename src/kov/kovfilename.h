#pragma once

#include <QString>
#include <QUrl>

/**
 * Sanitizes suggested file names. A result is one path component that is valid on any file system:
 * no separator, no control or formatting character, no leading dot, no trailing dot or space, at
 * most maxBytes bytes of UTF-8, never empty.
 */
namespace KovFileName {

/// File systems allow 255; the rest is left for a number and the suffix of partial files.
constexpr int maxBytes = 200;

/// Nothing when the suggestion has no usable character.
QString sanitized(const QString &suggestion);
/// The last path segment of the URL, else "download".
QString fromUrl(const QUrl &url);
/// "name.ext" for 1, "name (2).ext" for 2, and so on.
QString numbered(const QString &name, int number);

} // namespace KovFileName
