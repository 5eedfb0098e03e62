#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>

class pmxSerializable;
class pmxSerializationIoStream;

/// Members of a record that may be missing, each with its key, handled in their order. False only
/// when they cannot be written.
bool pmxSerializeOptionalStrings(
    pmxSerializationIoStream *stream,
    std::initializer_list<std::pair<std::string_view, std::string *>> members);
/// The same for JSON booleans.
bool pmxSerializeOptionalBools(pmxSerializationIoStream *stream,
                               std::initializer_list<std::pair<std::string_view, bool *>> members);
/// The same for bools that travel as the texts "1" and "0".
bool pmxSerializeOptionalTextBools(
    pmxSerializationIoStream *stream,
    std::initializer_list<std::pair<std::string_view, bool *>> members);
/// A nested record that may be missing. Its own Serialize decides whether it can fail.
bool pmxSerializeOptionalRecord(pmxSerializationIoStream *stream, std::string_view key,
                                pmxSerializable &record, unsigned int flags);
