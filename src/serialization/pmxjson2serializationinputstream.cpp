#include "pmxjson2serializationinputstream.h"

#include "pmxjsondocument.h"
#include "qtappdefaultlogger.h"

#include <picojson.h>

#include <iterator>
#include <utility>

namespace {

using Kind = pmxJsonNode::Kind;

} // namespace

pmxJson2SerializationInputStream::pmxJson2SerializationInputStream(
    std::shared_ptr<const pmxJsonNode> node)
    : m_node(std::move(node))
{
}

std::shared_ptr<pmxSerializationInputStream>
pmxJson2SerializationInputStream::SelectNode(const std::string &name) const
{
    if (name.empty())
        return std::make_shared<pmxJson2SerializationInputStream>(m_node);
    // Callers rely on an exception with the library's own text.
    if (!CanHaveNodes())
        (void)picojson::value().get<picojson::object>();
    const pmxJsonNode *const member = m_node->member(name);
    return member ? share(*member) : nullptr;
}

std::vector<std::shared_ptr<pmxSerializationInputStream>>
pmxJson2SerializationInputStream::SelectNodes(const std::string &name) const
{
    std::vector<std::shared_ptr<pmxSerializationInputStream>> nodes;
    if (!m_node)
        return nodes;
    const pmxJsonNode *list = nullptr;
    if (m_node->kind == Kind::Array)
        list = m_node.get();
    else if (m_node->kind == Kind::Object)
        list = find(name);
    if (!list)
        return nodes;

    if (list->kind == Kind::Array) {
        for (const auto *item = list->firstChild(); item != list->end(); item = item->next())
            nodes.push_back(share(*item));
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
    const bool isObject = m_node && m_node->kind == Kind::Object;
    // The caller knows the name, and logs it.
    m_toldOfNoObject = m_toldOfNoObject || !isObject;
    return isObject;
}

bool pmxJson2SerializationInputStream::ReadValue(const std::string &name, std::string &value,
                                                 bool) const
{
    const pmxJsonNode *const member = findOfKind(name, Kind::String);
    if (member)
        value = member->text;
    return member;
}

bool pmxJson2SerializationInputStream::ReadBoolValue(const std::string &name, bool &value,
                                                     bool) const
{
    const pmxJsonNode *const member = findOfKind(name, Kind::Bool);
    if (member)
        value = member->boolean;
    return member;
}

bool pmxJson2SerializationInputStream::ReadDoubleValue(const std::string &name, double &value,
                                                       bool) const
{
    const pmxJsonNode *const member = findOfKind(name, Kind::Number);
    if (member)
        value = member->number;
    return member;
}

void pmxJson2SerializationInputStream::clear() { m_node.reset(); }

bool pmxJson2SerializationInputStream::BindToStream(std::istream *stream)
{
    if (!stream) {
        clear();
        return false;
    }
    return BindToText({std::istreambuf_iterator<char>(*stream), {}});
}

bool pmxJson2SerializationInputStream::BindToText(std::string text)
{
    m_node = pmxJsonDocument::parseOwned(std::move(text));
    return m_node != nullptr;
}

bool pmxJson2SerializationInputStream::BindToLastingText(std::string_view text)
{
    m_node = pmxJsonDocument::parse(text);
    return m_node != nullptr;
}

template <typename Kind>
const pmxJsonNode *pmxJson2SerializationInputStream::findOfKind(std::string_view name,
                                                                Kind kind) const
{
    const pmxJsonNode *const member = find(name);
    if (!member || member->kind == kind)
        return member;
    logLine(1,
            QStringLiteral("[JSON]: WARNING: the member \"%1\" has the wrong kind")
                .arg(QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size()))));
    return nullptr;
}

const pmxJsonNode *pmxJson2SerializationInputStream::find(std::string_view name) const
{
    if (!m_node || name.empty())
        return m_node.get();
    if (m_node->kind == Kind::Object)
        return m_node->member(name);
    if (!std::exchange(m_toldOfNoObject, true))
        logLine(1,
                QStringLiteral("[JSON]: WARNING: what should have the member \"%1\" is no object")
                    .arg(QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size()))));
    return nullptr;
}

std::shared_ptr<pmxSerializationInputStream>
pmxJson2SerializationInputStream::share(const pmxJsonNode &part) const
{
    return std::make_shared<pmxJson2SerializationInputStream>(
        std::shared_ptr<const pmxJsonNode>(m_node, &part));
}
