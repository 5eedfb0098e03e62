#pragma once

#include "pmxoptionalmembers.h"
#include "pmxserializable.h"
#include "pmxserializationiostream.h"

#include <cstdint>
#include <string>

/// The proxy that the browser uses.
class pmxKovBhIpcBrowserProxyInfo : public pmxSerializable {
public:
    bool Serialize(pmxSerializationIoStream *stream, unsigned int) override
    {
        return stream->SerializeValueS("type", type, false)
            && pmxSerializeOptionalStrings(stream, {{"protocol", &protocol}, {"addr", &addr}})
            && stream->SerializeValueS("port", port, false);
    }

    std::uint32_t type = 0;
    std::string protocol;
    std::string addr;
    std::uint32_t port = 0;
};
