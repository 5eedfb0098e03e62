#include "pmxjson2serializationoutputstream.h"

#include <picojson.h>

#include <cmath>
#include <iterator>
#include <ostream>
#include <utility>

namespace {

picojson::value emptyObject() { return picojson::value(picojson::object_type, false); }

} // namespace

pmxJson2SerializationOutputStream::pmxJson2SerializationOutputStream()
    : m_value(std::make_unique<picojson::value>(emptyObject()))
{
}

pmxJson2SerializationOutputStream::~pmxJson2SerializationOutputStream() { flush(); }

std::shared_ptr<pmxSerializationOutputStream>
pmxJson2SerializationOutputStream::CreateNode(const std::string &name, bool arrayMark)
{
    if (name.empty() || !m_value->is<picojson::object>() || m_value->contains(name))
        return nullptr;
    auto node = std::make_shared<pmxJson2SerializationOutputStream>();
    m_children.emplace(name, Child{node, arrayMark});
    return node;
}

bool pmxJson2SerializationOutputStream::WriteValue(const std::string &name,
                                                   const std::string &value, bool)
{
    return write(name, picojson::value(value));
}

bool pmxJson2SerializationOutputStream::WriteBoolValue(const std::string &name, bool value, bool)
{
    return write(name, picojson::value(value));
}

bool pmxJson2SerializationOutputStream::WriteDoubleValue(const std::string &name, double value,
                                                         bool)
{
    return std::isfinite(value) && write(name, picojson::value(value));
}

void pmxJson2SerializationOutputStream::Flush() { flush(); }

void pmxJson2SerializationOutputStream::clear()
{
    *m_value = emptyObject();
    m_children.clear();
}

void pmxJson2SerializationOutputStream::BindToStream(std::ostream *stream) { m_target = stream; }

picojson::value pmxJson2SerializationOutputStream::getResultingJsonValue() const
{
    picojson::value result = *m_value;
    if (m_children.empty())
        return result;
    auto &members = result.get<picojson::object>();
    for (auto it = m_children.cbegin(); it != m_children.cend();) {
        const auto &[name, first] = *it;
        const auto end = m_children.upper_bound(name);
        if (std::next(it) == end && !first.arrayMark) {
            members[name] = first.node->getResultingJsonValue();
            it = end;
            continue;
        }
        picojson::array list;
        for (; it != end; ++it)
            list.push_back(it->second.node->getResultingJsonValue());
        members[name] = picojson::value(std::move(list));
    }
    return result;
}

bool pmxJson2SerializationOutputStream::write(const std::string &name, picojson::value &&value)
{
    if (!m_value->is<picojson::object>())
        return false;
    auto &members = m_value->get<picojson::object>();
    if (!name.empty()) {
        members[name] = std::move(value);
        return true;
    }
    if (!members.empty() || !m_children.empty())
        return false;
    *m_value = std::move(value);
    return true;
}

void pmxJson2SerializationOutputStream::flush()
{
    if (!m_target || m_flushed)
        return;
    m_flushed = true;
    const std::string text =
        m_children.empty() ? m_value->serialize() : getResultingJsonValue().serialize();
    m_target->write(text.data(), static_cast<std::streamsize>(text.size()));
}
