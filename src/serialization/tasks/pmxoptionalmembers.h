#pragma once

#include <initializer_list>
#include <string>
#include <utility>

class pmxSerializable;
class pmxSerializationIoStream;

/// Members of a record that may be missing, each with its key, handled in their order. False only
/// when they cannot be written.
bool pmxSerializeOptionalStrings(
    pmxSerializationIoStream *stream,
    std::initializer_list<std::pair<const char *, std::string *>> members);
/// The same for JSON booleans.
bool pmxSerializeOptionalBools(pmxSerializationIoStream *stream,
                               std::initializer_list<std::pair<const char *, bool *>> members);
/// The same for bools that travel as the texts "1" and "0".
bool pmxSerializeOptionalTextBools(pmxSerializationIoStream *stream,
                                   std::initializer_list<std::pair<const char *, bool *>> members);
/// A nested record that may be missing. Its own Serialize decides whether it can fail.
bool pmxSerializeOptionalRecord(pmxSerializationIoStream *stream, const std::string &key,
                                pmxSerializable &record, unsigned int flags);
