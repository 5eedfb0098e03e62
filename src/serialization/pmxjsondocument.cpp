#include "pmxjsondocument.h"

#include <picojson.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

constexpr int MaxDepth = picojson::DEFAULT_MAX_DEPTHS;

using Kind = pmxJsonNode::Kind;

/// Of a type of this file, so that the library finds the function below.
struct TextIterator {
    const char *at;

    char operator*() const { return *at; }
    TextIterator &operator++()
    {
        ++at;
        return *this;
    }
    bool operator==(const TextIterator &) const = default;
};

using Input = picojson::input<TextIterator>;

/// The library copies strings character by character; most of them stand unescaped in the input.
class TextInput : public Input {
public:
    explicit TextInput(std::string_view text)
        : Input({text.data()}, {text.data() + text.size()}) { }

    /// The characters up to the closing quote, an invalid character, or an escape sequence.
    std::string_view takePlain()
    {
        const char *const begin = cur().at;
        cur_.at = std::find_if(begin, end_.at, [](char c) {
            return c == '"' || c == '\\' || static_cast<unsigned char>(c) < ' ';
        });
        return {begin, cur_.at};
    }
    /// Whether the string ends here; then consumes the closing quote.
    bool takeQuote()
    {
        if (cur() == end_ || *cur() != '"')
            return false;
        ++cur_;
        return true;
    }

    /// The place in the input of the member name that was just read; nothing if it has escapes.
    std::string_view findBefore(std::string_view name, const char *textBegin) const
    {
        const char *quote = cur().at;
        while (quote != textBegin && *--quote != '"') { }
        const std::string_view before(textBegin, quote);
        return before.ends_with(name) ? before.substr(before.size() - name.size())
                                      : std::string_view();
    }
};

/// An overload that replaces the library's own, for the names of members.
bool _parse_string(std::string &name, Input &in) // NOLINT(bugprone-reserved-identifier)
{
    auto &input = static_cast<TextInput &>(in);
    name = input.takePlain();
    return input.takeQuote() || picojson::_parse_string(name, in);
}

} // namespace

/**
 * Creates nodes from the events of the library's parser.
 *
 * Replaces the library's own context, which copies every string into a tree, limits the depth of
 * arrays but not of objects, so that a hostile text would exhaust the stack, and throws on a number
 * too large for a double.
 */
class pmxJsonDocument::Context {
public:
    Context(pmxJsonDocument &document, const char *textBegin)
        : m_document(document), m_textBegin(textBegin)
    {
    }

    bool set_null()
    {
        add(Kind::Null);
        return true;
    }
    bool set_bool(bool value)
    {
        add(Kind::Bool).boolean = value;
        return true;
    }
    void set_number(double value)
    {
        if (std::isfinite(value))
            add(Kind::Number).number = value;
        else
            add(Kind::Null);
    }
    bool parse_string(Input &in)
    {
        auto &input = static_cast<TextInput &>(in);
        std::string_view text = input.takePlain();
        if (!input.takeQuote()) {
            std::string &whole = m_document.keep(text);
            if (!picojson::_parse_string(whole, in))
                return false;
            text = whole;
        }
        add(Kind::String).text = text;
        return true;
    }
    bool parse_array_start() { return start(Kind::Array); }
    bool parse_array_item(Input &in, std::size_t) { return picojson::_parse(*this, in); }
    bool parse_array_stop(std::size_t) { return stop(); }
    bool parse_object_start() { return start(Kind::Object); }
    bool parse_object_item(Input &in, const std::string &key)
    {
        m_key = static_cast<TextInput &>(in).findBefore(key, m_textBegin);
        if (m_key.size() != key.size())
            m_key = m_document.keep(key);
        return picojson::_parse(*this, in);
    }
    bool parse_object_stop() { return stop(); }

private:
    pmxJsonNode &add(Kind kind)
    {
        pmxJsonNode &node = m_document.m_nodes.emplace_back();
        node.key = std::exchange(m_key, {});
        node.kind = kind;
        return node;
    }
    bool start(Kind kind)
    {
        m_open.push_back(m_document.m_nodes.size());
        add(kind);
        return m_open.size() <= MaxDepth;
    }
    bool stop()
    {
        m_document.m_nodes[m_open.back()].span = m_document.m_nodes.size() - m_open.back();
        m_open.pop_back();
        return true;
    }

    pmxJsonDocument &m_document;
    const char *const m_textBegin;
    /// The name of the next node.
    std::string_view m_key;
    /// The arrays and objects that are open.
    std::vector<std::size_t> m_open;
};

const pmxJsonNode *pmxJsonNode::member(std::string_view name) const
{
    const pmxJsonNode *found = nullptr;
    for (const pmxJsonNode *child = firstChild(); child != end(); child = child->next()) {
        if (child->key == name)
            found = child;
    }
    return found;
}

std::shared_ptr<const pmxJsonNode> pmxJsonDocument::parse(std::string_view text)
{
    return parseInto(std::make_shared<pmxJsonDocument>(), text);
}

std::shared_ptr<const pmxJsonNode> pmxJsonDocument::parseOwned(std::string &&text)
{
    const auto document = std::make_shared<pmxJsonDocument>();
    document->m_ownText = std::move(text);
    return parseInto(document, document->m_ownText);
}

std::shared_ptr<const pmxJsonNode>
pmxJsonDocument::parseInto(const std::shared_ptr<pmxJsonDocument> &document, std::string_view text)
{
    Context context(*document, text.data());
    TextInput in(text);
    if (!picojson::_parse(context, in))
        return nullptr;
    return {document, document->m_nodes.data()};
}
