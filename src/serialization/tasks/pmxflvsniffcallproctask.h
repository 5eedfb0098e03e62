#pragma once

#include "pmxserializable.h"

#include <string>

/// A request to find the media that a page plays.
class pmxFlvSniffCallProcTask : public pmxSerializable {
public:
    bool Serialize(pmxSerializationIoStream *stream, unsigned int flags) override;

    std::string name;
    std::string webPageUrl;
    std::string frameUrl;
    /// The player, its parameters, and those of the other players on the page.
    std::string swfUrl;
    std::string flashVars;
    std::string otherSwfUrls;
    std::string otherFlashVars;
    /// The resource itself, where the extension knows it.
    std::string url;
    std::string srcTabUrl;
    /// Raw header blocks, "Name: value" lines.
    std::string requestHeaders;
    std::string responseHeaders;
    /// The browser's id of the request.
    std::string requestId;
};
