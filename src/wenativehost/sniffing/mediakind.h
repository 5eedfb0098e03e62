#pragma once

#include "mediarequest.h"

#include <QString>

class HttpHeaderBlock;

/**
 * What an answer with these headers to a request of this URL is: by its media type, or by its file
 * name where the type is missing or says nothing (application/octet-stream).
 */
MediaKind mediaKindOf(const std::string &url, const HttpHeaderBlock &responseHeaders);

/// What a file name or the last segment of a URL's path promises.
MediaKind mediaKindOfFileName(const QString &fileName);

/// The last segment of the URL's path, percent-decoded; empty if there is none.
QString fileNameOfUrl(const std::string &url);
