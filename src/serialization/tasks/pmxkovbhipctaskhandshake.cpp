#include "pmxkovbhipctaskhandshake.h"

#include "pmxoptionalmembers.h"
#include "pmxserializationiostream.h"

bool pmxKovBhIpcTaskHandshake::Serialize(pmxSerializationIoStream *stream, unsigned int)
{
    // A malformed flag stays off; the others are still read.
    const bool ok = pmxSerializeOptionalTextBools(
        stream,
        {{"response_add_crlf", &response_add_crlf},
         {"response_send_data_len_as_string", &response_send_data_len_as_string},
         {"uri_encoding_for_rcv", &uri_encoding_for_rcv},
         {"uri_encoding_for_send", &uri_encoding_for_send},
         {"base64_encoding_for_rcv", &base64_encoding_for_rcv},
         {"base64_encoding_for_send", &base64_encoding_for_send}});
    return ok && stream->SerializeValue("browser", browser, false)
        && stream->SerializeValueS("api_version", api_version, false);
}
