#pragma once

#include "mediarequest.h"

#include <QString>

class HttpHeaderBlock;

/**
 * The kind of a response with these headers to a request of this URL: by its media type, or by its
 * file name if the type is missing or generic (application/octet-stream).
 */
MediaKind mediaKindOf(const std::string &url, const HttpHeaderBlock &responseHeaders);

/// The kind according to a file name, or to the last segment of a URL's path.
MediaKind mediaKindOfFileName(const QString &fileName);

/// The last segment of the URL's path, percent-decoded; empty if there is none.
QString fileNameOfUrl(const std::string &url);
