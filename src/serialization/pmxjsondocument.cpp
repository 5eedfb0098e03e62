#include "pmxjsondocument.h"

#include <picojson.h>

#include <array>
#include <cmath>
#include <optional>
#include <utility>

namespace {

constexpr std::size_t MaxDepth = picojson::DEFAULT_MAX_DEPTHS;
constexpr std::size_t usualNodes = 16;

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

/// Indexed by character: whether a JSON string may contain it unescaped.
constexpr auto isPlain = [] {
    std::array<bool, 256> plain{};
    for (std::size_t c = ' '; c < plain.size(); ++c)
        plain[c] = c != '"' && c != '\\';
    return plain;
}();

/// The library copies strings character by character; most of them stand unescaped in the input.
class TextInput : public Input {
public:
    explicit TextInput(std::string_view text)
        : Input({text.data()}, {text.data() + text.size()}) { }

    /// The characters up to the closing quote, an invalid character, or an escape sequence.
    std::string_view takePlain()
    {
        const char *const begin = cur().at;
        const char *at = begin;
        while (at != end_.at && isPlain[static_cast<unsigned char>(*at)])
            ++at;
        cur_.at = at;
        return {begin, at};
    }
    /// Whether the string ends here; then consumes the closing quote.
    bool takeQuote()
    {
        if (cur() == end_ || *cur() != '"')
            return false;
        ++cur_;
        return true;
    }

    /// The name of the member whose value follows, in the input; nothing if it has escapes.
    std::optional<std::string_view> name;
};

/// An overload that replaces the library's own, for the names of members. A name without escapes is
/// not copied.
bool _parse_string(std::string &name, Input &in) // NOLINT(bugprone-reserved-identifier)
{
    auto &input = static_cast<TextInput &>(in);
    const std::string_view plain = input.takePlain();
    if (input.takeQuote()) {
        input.name = plain;
        return true;
    }
    input.name.reset();
    name = plain;
    return picojson::_parse_string(name, in);
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
    explicit Context(pmxJsonDocument &document) : m_document(document)
    {
        document.m_nodes.reserve(usualNodes);
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
        const auto &name = static_cast<TextInput &>(in).name;
        m_key = name ? *name : m_document.keep(key);
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
        if (m_depth == m_open.size())
            return false;
        m_open[m_depth++] = m_document.m_nodes.size();
        add(kind);
        return true;
    }
    bool stop()
    {
        const std::size_t opened = m_open[--m_depth];
        m_document.m_nodes[opened].span = m_document.m_nodes.size() - opened;
        return true;
    }

    pmxJsonDocument &m_document;
    /// The name of the next node.
    std::string_view m_key;
    /// The arrays and objects that are open.
    std::array<std::size_t, MaxDepth> m_open{};
    std::size_t m_depth = 0;
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
    Context context(*document);
    TextInput in(text);
    if (!picojson::_parse(context, in))
        return nullptr;
    return {document, document->m_nodes.data()};
}
