#pragma once

#include "pmxserializable.h"
#include "pmxserializationiostream.h"

#include <string>
#include <tuple>
#include <type_traits>

/**
 * The complete description of a member of a settings record, in one row. Records list their rows in
 * "static constexpr auto members()", in the order in which they are written.
 */
template <typename Record, typename Value> struct pmxMember {
    constexpr pmxMember(const char *keyInJson, Value Record::*member)
        : key(keyInJson), value(member)
    {
    }

    /// The application's setting that holds it.
    constexpr pmxMember heldBy(const char *settingName) const
    {
        pmxMember copy = *this;
        copy.setting = settingName;
        return copy;
    }
    /// The application's setting that switches it on. When it is off, the record has 0 or the empty
    /// text.
    constexpr pmxMember switchedBy(const char *settingName) const
    {
        pmxMember copy = *this;
        copy.switchSetting = settingName;
        return copy;
    }
    /// The member without which it is not written to the application's settings.
    constexpr pmxMember writtenOnlyWith(bool Record::*member) const
    {
        pmxMember copy = *this;
        copy.writtenWith = member;
        return copy;
    }
    /// Not compared: a change of it alone does not count as a change of the record.
    constexpr pmxMember notCompared() const
    {
        pmxMember copy = *this;
        copy.isCompared = false;
        return copy;
    }

    const char *key;
    Value Record::*value;
    const char *setting = nullptr;
    const char *switchSetting = nullptr;
    bool Record::*writtenWith = nullptr;
    bool isCompared = true;
};

namespace pmxMembers {

/// Logs that a member of a message is ignored because it cannot be read.
void logUnreadable(const char *key);

inline bool serialize(pmxSerializationIoStream *stream, const char *key, bool &value)
{
    return stream->SerializeBoolValue(key, value, true);
}
inline bool serialize(pmxSerializationIoStream *stream, const char *key, std::string &value)
{
    return stream->SerializeValue(key, value, true);
}
template <typename Number>
bool serialize(pmxSerializationIoStream *stream, const char *key, Number &value)
{
    return stream->SerializeValueS(key, value, true);
}

template <typename Value>
bool serializeMember(pmxSerializationIoStream *stream, const char *key, Value &value,
                     unsigned int flags)
{
    if constexpr (std::is_base_of_v<pmxSerializable, Value>) {
        const auto node = stream->SelectOrCreateNode(key, false);
        if (!node)
            return stream->isReading();
        if (!node->canHaveMembers())
            logUnreadable(key);
        return value.Serialize(node.get(), flags);
    } else {
        if (serialize(stream, key, value))
            return true;
        if (stream->hasMember(key))
            logUnreadable(key);
        return stream->isReading();
    }
}

} // namespace pmxMembers

/// Reads or writes all members. One that is missing or cannot be read keeps its value, the latter
/// is logged; false when one cannot be written.
template <typename Record>
bool pmxSerializeMembers(pmxSerializationIoStream *stream, Record &record, unsigned int flags)
{
    return std::apply(
        [&](const auto &...member) {
            return (pmxMembers::serializeMember(stream, member.key, record.*member.value, flags)
                    && ...);
        },
        Record::members());
}

/// Whether all members that are compared are equal.
template <typename Record> bool pmxEqualMembers(const Record &a, const Record &b)
{
    return std::apply(
        [&](const auto &...member) {
            return ((!member.isCompared || a.*member.value == b.*member.value) && ...);
        },
        Record::members());
}
