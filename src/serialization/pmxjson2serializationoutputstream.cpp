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
constexpr auto needsNoEscape = [] {
    std::array<bool, 256> plain{};
    for (std::size_t c = ' '; c < plain.size(); ++c)
        plain[c] = c != '"' && c != '\\' && c != '/' && c != 0x7f;
    return plain;
}();

/// Writes the same as the library, but not character by character.
void appendString(std::string &out, std::string_view text)
{
    out += '"';
    for (auto at = text.cbegin(); at != text.cend();) {
        const auto special = std::find_if_not(
            at, text.cend(), [](char c) { return needsNoEscape[static_cast<unsigned char>(c)]; });
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
    if (name.empty() || isPlainValue() || isMemberAt(placeOf(name), name))
        return nullptr;
    auto node = std::make_shared<pmxJson2SerializationOutputStream>();
    m_children.emplace(name, Child{node, arrayMark});
    return node;
}

bool pmxJson2SerializationOutputStream::WriteValue(const std::string &name,
                                                   const std::string &value, bool)
{
    return writeMember(name, [&value](std::string &out) { appendString(out, value); });
}

bool pmxJson2SerializationOutputStream::WriteBoolValue(const std::string &name, bool value, bool)
{
    return writeMember(name, [value](std::string &out) { out += value ? "true" : "false"; });
}

bool pmxJson2SerializationOutputStream::WriteDoubleValue(const std::string &name, double value,
                                                         bool)
{
    return std::isfinite(value)
        && writeMember(name, [value](std::string &out) { out += picojson::value(value).to_str(); });
}

void pmxJson2SerializationOutputStream::Flush() { flush(); }

void pmxJson2SerializationOutputStream::clear()
{
    m_texts.clear();
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

std::string_view pmxJson2SerializationOutputStream::viewOf(const Piece &piece) const
{
    return {m_texts.data() + piece.at, piece.size};
}

template <typename AppendText>
bool pmxJson2SerializationOutputStream::writeMember(std::string_view name,
                                                    const AppendText &appendText)
{
    const bool isEmpty = m_members.empty() && m_children.empty();
    if (isPlainValue() || (name.empty() && !isEmpty))
        return false;
    if (m_members.empty()) {
        m_members.reserve(usualMembers);
        m_texts.reserve(usualSize);
    }
    auto place = placeOf(name);
    if (!isMemberAt(place, name)) {
        place = m_members.insert(place, Member{{m_texts.size(), name.size()}, {}});
        m_texts += name;
    }
    const std::size_t begin = m_texts.size();
    appendText(m_texts);
    place->text = {begin, m_texts.size() - begin};
    return true;
}

std::vector<pmxJson2SerializationOutputStream::Member>::iterator
pmxJson2SerializationOutputStream::placeOf(std::string_view name)
{
    return std::lower_bound(m_members.begin(), m_members.end(), name,
                            [this](const Member &member, std::string_view wanted) {
                                return viewOf(member.name) < wanted;
                            });
}

bool pmxJson2SerializationOutputStream::isMemberAt(std::vector<Member>::iterator place,
                                                   std::string_view name) const
{
    return place != m_members.end() && viewOf(place->name) == name;
}

bool pmxJson2SerializationOutputStream::isPlainValue() const
{
    return !m_members.empty() && m_members.front().name.size == 0;
}

void pmxJson2SerializationOutputStream::appendText(std::string &out) const
{
    if (isPlainValue()) {
        out += viewOf(m_members.front().text);
        return;
    }
    out += '{';
    auto member = m_members.cbegin();
    for (auto child = m_children.cbegin();
         member != m_members.cend() || child != m_children.cend();) {
        const std::string_view name =
            member != m_members.cend() ? viewOf(member->name) : std::string_view();
        if (out.back() != '{')
            out += ',';
        const bool isMember =
            child == m_children.cend() || (member != m_members.cend() && name < child->first);
        appendString(out, isMember ? name : child->first);
        out += ':';
        if (isMember) {
            out += viewOf(member->text);
            ++member;
        } else {
            if (name == child->first)
                ++member; // the child replaces it
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
