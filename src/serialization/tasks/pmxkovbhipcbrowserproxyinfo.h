#pragma once

#include "pmxserializable.h"

#include <cstdint>
#include <string>

/// The proxy that the browser uses.
class pmxKovBhIpcBrowserProxyInfo : public pmxSerializable {
public:
    bool Serialize(pmxSerializationIoStream *stream, unsigned int flags) override;

    std::uint32_t type = 0;
    std::string protocol;
    std::string addr;
    std::uint32_t port = 0;
};
