#include "pmxjson2serializationinputstream.h"

#include "pmxjsonparser.h"
#include "qtappdefaultlogger.h"

#include <iterator>
#include <utility>

pmxJson2SerializationInputStream::pmxJson2SerializationInputStream(
    std::shared_ptr<const picojson::value> value)
    : m_value(std::move(value))
{
}

std::shared_ptr<pmxSerializationInputStream>
pmxJson2SerializationInputStream::SelectNode(const std::string &name) const
{
    if (name.empty())
        return std::make_shared<pmxJson2SerializationInputStream>(m_value);
    // Throws when the node is no object. Callers rely on that, with that text.
    static const picojson::value null;
    const auto &object = (m_value ? *m_value : null).get<picojson::object>();
    const auto it = object.find(name);
    return it == object.end() ? nullptr : share(it->second);
}

std::vector<std::shared_ptr<pmxSerializationInputStream>>
pmxJson2SerializationInputStream::SelectNodes(const std::string &name) const
{
    std::vector<std::shared_ptr<pmxSerializationInputStream>> nodes;
    if (!m_value)
        return nodes;
    const picojson::value *list = nullptr;
    if (m_value->is<picojson::array>())
        list = m_value.get();
    else if (m_value->is<picojson::object>())
        list = find(name);
    if (!list)
        return nodes;

    if (list->is<picojson::array>()) {
        const auto &elements = list->get<picojson::array>();
        nodes.reserve(elements.size());
        for (const picojson::value &element : elements)
            nodes.push_back(share(element));
    } else {
        nodes.push_back(share(*list));
    }
    return nodes;
}

bool pmxJson2SerializationInputStream::HasNode(const std::string &name) const
{
    return find(name) != nullptr;
}

bool pmxJson2SerializationInputStream::CanHaveNodes() const
{
    const bool isObject = m_value && m_value->is<picojson::object>();
    // Whoever asks knows its name, and tells of it better.
    m_toldOfNoObject = m_toldOfNoObject || !isObject;
    return isObject;
}

bool pmxJson2SerializationInputStream::ReadValue(const std::string &name, std::string &value,
                                                 bool) const
{
    return read(name, value);
}

bool pmxJson2SerializationInputStream::ReadBoolValue(const std::string &name, bool &value,
                                                     bool) const
{
    return read(name, value);
}

bool pmxJson2SerializationInputStream::ReadDoubleValue(const std::string &name, double &value,
                                                       bool) const
{
    return read(name, value);
}

void pmxJson2SerializationInputStream::clear() { m_value.reset(); }

bool pmxJson2SerializationInputStream::BindToStream(std::istream *stream)
{
    if (!stream) {
        clear();
        return false;
    }
    const std::string text{std::istreambuf_iterator<char>(*stream), {}};
    return BindToText(text);
}

bool pmxJson2SerializationInputStream::BindToText(std::string_view text)
{
    m_value = pmxParseJson(text);
    return m_value != nullptr;
}

template <typename T>
bool pmxJson2SerializationInputStream::read(const std::string &name, T &value) const
{
    const picojson::value *member = find(name);
    if (!member)
        return false;
    if (!member->is<T>()) {
        logLine(1,
                QStringLiteral("[JSON]: WARNING: the member \"%1\" has the wrong kind")
                    .arg(QString::fromStdString(name)));
        return false;
    }
    value = member->get<T>();
    return true;
}

const picojson::value *pmxJson2SerializationInputStream::find(const std::string &name) const
{
    if (!m_value || name.empty())
        return m_value.get();
    if (!m_value->is<picojson::object>()) {
        if (!std::exchange(m_toldOfNoObject, true))
            logLine(
                1,
                QStringLiteral("[JSON]: WARNING: what should have the member \"%1\" is no object")
                    .arg(QString::fromStdString(name)));
        return nullptr;
    }
    const auto &object = m_value->get<picojson::object>();
    const auto it = object.find(name);
    return it == object.end() ? nullptr : &it->second;
}

std::shared_ptr<pmxSerializationInputStream>
pmxJson2SerializationInputStream::share(const picojson::value &part) const
{
    return std::make_shared<pmxJson2SerializationInputStream>(
        std::shared_ptr<const picojson::value>(m_value, &part));
}
