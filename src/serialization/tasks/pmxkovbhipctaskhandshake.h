#pragma once

#include "pmxserializable.h"

#include <cstdint>
#include <string>

/**
 * The options of the channel that the extension requests, and the extension's identity.
 * A flag that cannot be read stays false.
 */
class pmxKovBhIpcTaskHandshake : public pmxSerializable {
public:
    bool Serialize(pmxSerializationIoStream *stream, unsigned int flags) override;

    /// To the extension: each message ends with a carriage return and a line feed.
    bool response_add_crlf = false;
    /// To the extension: the length before a message is a decimal text.
    bool response_send_data_len_as_string = false;
    /// From and to the extension: the text is percent-encoded.
    bool uri_encoding_for_rcv = false;
    bool uri_encoding_for_send = false;
    /// From and to the extension: the text is encoded in Base64.
    bool base64_encoding_for_rcv = false;
    bool base64_encoding_for_send = false;
    /// The browser's description of itself.
    std::string browser;
    /// The extension's version of the protocol.
    std::uint32_t api_version = 0;
};
