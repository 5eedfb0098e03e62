#pragma once

#include "pmxserializable.h"

#include <string>

/// An event of a network request of the browser.
class pmxKovBhIpcTaskNetworkRequestNotification : public pmxSerializable {
public:
    bool Serialize(pmxSerializationIoStream *stream, unsigned int flags) override;

    /// The event.
    std::string type;
    std::string url;
    /// The page of the tab that made the request.
    std::string srcTabUrl;
    /// The browser's id of the request.
    std::string requestId;
    /// Raw header blocks, "Name: value" lines.
    std::string requestHeaders;
    std::string responseHeaders;
    /// Its meaning depends on the type.
    std::string data;
};
