#include "pmxoptionalmembers.h"

#include "pmxserializable.h"
#include "pmxserializationiostream.h"

bool pmxSerializeOptionalStrings(
    pmxSerializationIoStream *stream,
    std::initializer_list<std::pair<std::string_view, std::string *>> members)
{
    bool ok = true;
    for (const auto &[key, value] : members)
        ok = stream->SerializeValue(key, *value, false) && ok;
    return ok;
}

bool pmxSerializeOptionalBools(pmxSerializationIoStream *stream,
                               std::initializer_list<std::pair<std::string_view, bool *>> members)
{
    bool ok = true;
    for (const auto &[key, value] : members)
        ok = stream->SerializeBoolValue(key, *value, false) && ok;
    return ok;
}

bool pmxSerializeOptionalTextBools(
    pmxSerializationIoStream *stream,
    std::initializer_list<std::pair<std::string_view, bool *>> members)
{
    bool ok = true;
    for (const auto &[key, value] : members)
        ok = stream->SerializeValueS(key, *value, false) && ok;
    return ok;
}

bool pmxSerializeOptionalRecord(pmxSerializationIoStream *stream, std::string_view key,
                                pmxSerializable &record, unsigned int flags)
{
    const auto node = stream->SelectOrCreateNode(key, false);
    return node ? record.Serialize(node.get(), flags) : stream->isReading();
}
