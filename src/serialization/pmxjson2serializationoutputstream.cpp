#include "pmxjson2serializationoutputstream.h"

#include <picojson.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <ostream>
#include <utility>

namespace {

constexpr std::size_t usualMembers = 8;
constexpr std::size_t usualSize = 256;

/// Indexed by character: whether the library writes it unescaped.
constexpr auto isPlain = [] {
    std::array<bool, 256> plain{};
    for (std::size_t c = ' '; c < plain.size(); ++c)
        plain[c] = c != '"' && c != '\\' && c != '/' && c != 0x7f;
    return plain;
}();

/// Writes the same as the library, but not character by character.
void appendString(std::string &out, const std::string &text)
{
    out += '"';
    for (auto at = text.cbegin(); at != text.cend();) {
        const auto special = std::find_if_not(
            at, text.cend(), [](char c) { return isPlain[static_cast<unsigned char>(c)]; });
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
    if (name.empty() || m_onlyValue)
        return nullptr;
    if (const auto place = placeOf(name); place != m_members.end() && place->name == name)
        return nullptr;
    auto node = std::make_shared<pmxJson2SerializationOutputStream>();
    m_children.emplace(name, Child{node, arrayMark});
    return node;
}

bool pmxJson2SerializationOutputStream::WriteValue(const std::string &name,
                                                   const std::string &value, bool)
{
    std::string *const text = textOf(name);
    if (!text)
        return false;
    text->reserve(value.size() + 2);
    appendString(*text, value);
    return true;
}

bool pmxJson2SerializationOutputStream::WriteBoolValue(const std::string &name, bool value, bool)
{
    std::string *const text = textOf(name);
    if (text)
        *text = value ? "true" : "false";
    return text;
}

bool pmxJson2SerializationOutputStream::WriteDoubleValue(const std::string &name, double value,
                                                         bool)
{
    std::string *const text = std::isfinite(value) ? textOf(name) : nullptr;
    if (text)
        *text = picojson::value(value).to_str();
    return text;
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
    text.reserve(usualSize);
    appendText(text);
    return text;
}

picojson::value pmxJson2SerializationOutputStream::getResultingJsonValue() const
{
    picojson::value value;
    picojson::parse(value, text());
    return value;
}

std::vector<pmxJson2SerializationOutputStream::Member>::iterator
pmxJson2SerializationOutputStream::placeOf(const std::string &name)
{
    return std::lower_bound(
        m_members.begin(), m_members.end(), name,
        [](const Member &member, const std::string &wanted) { return member.name < wanted; });
}

std::string *pmxJson2SerializationOutputStream::textOf(const std::string &name)
{
    if (m_onlyValue)
        return nullptr;
    if (name.empty())
        return m_members.empty() && m_children.empty() ? &m_onlyValue.emplace() : nullptr;
    if (m_members.empty())
        m_members.reserve(usualMembers);
    auto place = placeOf(name);
    if (place == m_members.end() || place->name != name)
        place = m_members.insert(place, Member{name, {}});
    place->text.clear();
    return &place->text;
}

void pmxJson2SerializationOutputStream::appendText(std::string &out) const
{
    if (m_onlyValue) {
        out += *m_onlyValue;
        return;
    }
    out += '{';
    auto member = m_members.cbegin();
    for (auto child = m_children.cbegin();
         member != m_members.cend() || child != m_children.cend();) {
        if (member != m_members.cend() && child != m_children.cend()
            && member->name == child->first) {
            ++member; // the child replaces it
            continue;
        }
        if (out.back() != '{')
            out += ',';
        const bool isMember = child == m_children.cend()
            || (member != m_members.cend() && member->name < child->first);
        appendString(out, isMember ? member->name : child->first);
        out += ':';
        if (isMember) {
            out += member->text;
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
