#pragma once

#include "pmxjson2serializationinputstream.h"
#include "pmxjson2serializationoutputstream.h"
#include "pmxserializationiostream.h"

#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>

/**
 * Reads the record from a JSON text in UTF-8. False when the text is malformed, which leaves the
 * record as it was, or when the record's Serialize fails, which leaves in it what was read until
 * then.
 *
 * Throws std::runtime_error, with the JSON library's text, when a record selects a child node from
 * what is not a JSON object.
 */
template <typename T>
bool pmxJsonSerializeObject(T &object, std::string_view json, unsigned int flags)
{
    const auto input = std::make_shared<pmxJson2SerializationInputStream>();
    if (!input->BindToLastingText(json))
        return false;
    pmxSerializationIoStream stream(input);
    return object.Serialize(&stream, flags);
}

/// Writes the record as a compact JSON text, with its keys in alphabetical order. Nothing when the
/// record's Serialize failed.
template <typename T> std::optional<std::string> pmxJsonText(T &object, unsigned int flags)
{
    const auto output = std::make_shared<pmxJson2SerializationOutputStream>();
    pmxSerializationIoStream stream(output);
    if (!object.Serialize(&stream, flags))
        return std::nullopt;
    return output->text();
}

/// The same to a stream. False when the record's Serialize failed, and nothing is written then, or
/// when the stream did.
template <typename T> bool pmxJsonSerializeObject(T &object, std::ostream &out, unsigned int flags)
{
    const std::optional<std::string> text = pmxJsonText(object, flags);
    return text && out.write(text->data(), static_cast<std::streamsize>(text->size()));
}
