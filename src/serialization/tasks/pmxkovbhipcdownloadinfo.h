#pragma once

#include "pmxserializable.h"

#include <cstdint>
#include <string>

/**
 * One download that the extension hands over. Only the URL is required.
 * Texts are UTF-8.
 */
class pmxKovBhIpcDownloadInfo : public pmxSerializable {
public:
    enum MediaKind {
        NoMediaKind = 0,
        VideoMediaKind = 1,
        AudioMediaKind = 2,
        StreamMediaKind = 4,
    };

    /// In JSON, "-1" reads as this.
    static constexpr std::uint64_t UnknownFileSize = ~std::uint64_t(0);

    bool Serialize(pmxSerializationIoStream *stream, unsigned int flags) override;

    std::string url;
    /// A file name, empty when the browser knows none.
    std::string suggestedName;
    std::string httpReferer;
    /// The page that the download was started from.
    std::string documentUrl;
    std::string userAgent;
    /// As in a Cookie header: "name=value; name=value".
    std::string httpCookies;
    /// The body of a POST request; empty for a GET.
    std::string httpPostData;
    /// The URL before redirects.
    std::string originalUrl;
    /// In bytes, UnknownFileSize when the browser does not know.
    std::uint64_t fileSize = 0;

    /// What the host itself found out about the download's content; not part of the JSON.
    MediaKind mediaKind = NoMediaKind;
};
