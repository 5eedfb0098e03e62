#pragma once

#include "pmxserializable.h"

#include <string>

/// Something that happened to a network request of the browser.
class pmxKovBhIpcTaskNetworkRequestNotification : public pmxSerializable {
public:
    bool Serialize(pmxSerializationIoStream *stream, unsigned int flags) override;

    /// What happened.
    std::string type;
    std::string url;
    /// The page of the tab that made the request.
    std::string srcTabUrl;
    /// The browser's id of the request.
    std::string requestId;
    /// Raw header blocks, "Name: value" lines.
    std::string requestHeaders;
    std::string responseHeaders;
    /// What belongs to the type.
    std::string data;
};
