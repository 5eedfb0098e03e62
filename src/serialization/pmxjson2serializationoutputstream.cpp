#include "pmxjson2serializationoutputstream.h"

#include <picojson.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <ostream>
#include <utility>

namespace {

constexpr std::size_t usualMembers = 8;

/// Whether the library writes the character unescaped.
bool isPlain(char c)
{
    return static_cast<unsigned char>(c) >= ' ' && c != '"' && c != '\\' && c != '/' && c != '\x7f';
}

/// Writes the same as the library, but not character by character.
void appendString(std::string &out, const std::string &text)
{
    out += '"';
    for (auto at = text.cbegin(); at != text.cend();) {
        const auto special = std::find_if_not(at, text.cend(), isPlain);
        out.append(at, special);
        at = special;
        if (at != text.cend())
            picojson::serialize_str_char<std::back_insert_iterator<std::string>>{
                std::back_inserter(out)}(*at++);
    }
    out += '"';
}

} // namespace

pmxJson2SerializationOutputStream::~pmxJson2SerializationOutputStream() { flush(); }

std::shared_ptr<pmxSerializationOutputStream>
pmxJson2SerializationOutputStream::CreateNode(const std::string &name, bool arrayMark)
{
    if (name.empty() || m_onlyValue || findMember(name))
        return nullptr;
    auto node = std::make_shared<pmxJson2SerializationOutputStream>();
    m_children.emplace(name, Child{node, arrayMark});
    return node;
}

bool pmxJson2SerializationOutputStream::WriteValue(const std::string &name,
                                                   const std::string &value, bool)
{
    std::string text;
    text.reserve(value.size() + 2);
    appendString(text, value);
    return write(name, std::move(text));
}

bool pmxJson2SerializationOutputStream::WriteBoolValue(const std::string &name, bool value, bool)
{
    return write(name, value ? "true" : "false");
}

bool pmxJson2SerializationOutputStream::WriteDoubleValue(const std::string &name, double value,
                                                         bool)
{
    return std::isfinite(value) && write(name, picojson::value(value).to_str());
}

void pmxJson2SerializationOutputStream::Flush() { flush(); }

void pmxJson2SerializationOutputStream::clear()
{
    m_onlyValue.reset();
    m_members.clear();
    m_children.clear();
}

void pmxJson2SerializationOutputStream::BindToStream(std::ostream *stream) { m_target = stream; }

std::string pmxJson2SerializationOutputStream::text() const
{
    std::string text;
    appendText(text);
    return text;
}

picojson::value pmxJson2SerializationOutputStream::getResultingJsonValue() const
{
    picojson::value value;
    picojson::parse(value, text());
    return value;
}

bool pmxJson2SerializationOutputStream::write(const std::string &name, std::string &&text)
{
    if (m_onlyValue)
        return false;
    if (name.empty()) {
        if (!m_members.empty() || !m_children.empty())
            return false;
        m_onlyValue = std::move(text);
    } else if (const Member *const member = findMember(name)) {
        m_members[static_cast<size_t>(member - m_members.data())].text = std::move(text);
    } else {
        if (m_members.empty())
            m_members.reserve(usualMembers);
        m_members.push_back({name, std::move(text)});
    }
    return true;
}

const pmxJson2SerializationOutputStream::Member *
pmxJson2SerializationOutputStream::findMember(const std::string &name) const
{
    const auto it = std::find_if(m_members.cbegin(), m_members.cend(),
                                 [&name](const Member &member) { return member.name == name; });
    return it == m_members.cend() ? nullptr : &*it;
}

void pmxJson2SerializationOutputStream::appendText(std::string &out) const
{
    if (m_onlyValue) {
        out += *m_onlyValue;
        return;
    }
    std::vector<const Member *> members;
    members.reserve(m_members.size());
    for (const Member &member : m_members) {
        if (m_children.empty() || !m_children.contains(member.name))
            members.push_back(&member);
    }
    std::sort(members.begin(), members.end(),
              [](const Member *a, const Member *b) { return a->name < b->name; });

    out += '{';
    auto member = members.cbegin();
    for (auto child = m_children.cbegin();
         member != members.cend() || child != m_children.cend();) {
        if (out.back() != '{')
            out += ',';
        const bool isMember = child == m_children.cend()
            || (member != members.cend() && (*member)->name < child->first);
        appendString(out, isMember ? (*member)->name : child->first);
        out += ':';
        if (isMember) {
            out += (*member)->text;
            ++member;
        } else {
            const auto end = m_children.upper_bound(child->first);
            appendChildren(out, child, end);
            child = end;
        }
    }
    out += '}';
}

void pmxJson2SerializationOutputStream::appendChildren(std::string &out,
                                                       Children::const_iterator first,
                                                       Children::const_iterator end)
{
    if (std::next(first) == end && !first->second.arrayMark) {
        first->second.node->appendText(out);
        return;
    }
    char separator = '[';
    for (; first != end; ++first) {
        out += std::exchange(separator, ',');
        first->second.node->appendText(out);
    }
    out += ']';
}

void pmxJson2SerializationOutputStream::flush()
{
    if (!m_target || m_flushed)
        return;
    m_flushed = true;
    const std::string whole = text();
    m_target->write(whole.data(), static_cast<std::streamsize>(whole.size()));
}
