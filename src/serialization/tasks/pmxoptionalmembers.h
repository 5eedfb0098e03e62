#pragma once

#include <initializer_list>
#include <string>
#include <utility>

class pmxSerializationIoStream;

/// Members of a record that may be missing, each with its key, handled in their order. False only
/// when they cannot be written.
bool pmxSerializeOptionalStrings(
    pmxSerializationIoStream *stream,
    std::initializer_list<std::pair<const char *, std::string *>> members);
/// The same for JSON booleans.
bool pmxSerializeOptionalBools(pmxSerializationIoStream *stream,
                               std::initializer_list<std::pair<const char *, bool *>> members);
