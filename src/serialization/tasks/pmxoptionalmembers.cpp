#include "pmxoptionalmembers.h"

#include "pmxserializable.h"
#include "pmxserializationiostream.h"

bool pmxSerializeOptionalStrings(
    pmxSerializationIoStream *stream,
    std::initializer_list<std::pair<const char *, std::string *>> members)
{
    bool ok = true;
    std::string name; // one for all: many are long
    for (const auto &[key, value] : members)
        ok = stream->SerializeValue(name = key, *value, false) && ok;
    return ok;
}

bool pmxSerializeOptionalBools(pmxSerializationIoStream *stream,
                               std::initializer_list<std::pair<const char *, bool *>> members)
{
    bool ok = true;
    for (const auto &[key, value] : members)
        ok = stream->SerializeBoolValue(key, *value, false) && ok;
    return ok;
}

bool pmxSerializeOptionalTextBools(pmxSerializationIoStream *stream,
                                   std::initializer_list<std::pair<const char *, bool *>> members)
{
    bool ok = true;
    std::string name; // one for all: many are long
    for (const auto &[key, value] : members)
        ok = stream->SerializeValueS(name = key, *value, false) && ok;
    return ok;
}

bool pmxSerializeOptionalRecord(pmxSerializationIoStream *stream, const std::string &key,
                                pmxSerializable &record, unsigned int flags)
{
    const auto node = stream->SelectOrCreateNode(key, false);
    return node ? record.Serialize(node.get(), flags) : stream->isReading();
}
