#pragma once

#include <cstddef>
#include <forward_list>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

/**
 * A value of a JSON text: a view into the text, without a copy. The values of a text are stored one
 * after another in document order, an array or object before its elements.
 */
struct pmxJsonNode {
    enum class Kind : unsigned char { Null, Bool, Number, String, Array, Object };

    /// The name, if it is the member of an object.
    std::string_view key;
    /// Of a string, without escape sequences.
    std::string_view text;
    double number = 0;
    /// The size of its subtree: itself and everything within it. The next sibling follows after so
    /// many nodes.
    std::size_t span = 1;
    Kind kind = Kind::Null;
    bool boolean = false;

    const pmxJsonNode *firstChild() const { return this + 1; }
    const pmxJsonNode *next() const { return this + span; }
    const pmxJsonNode *end() const { return this + span; }
    /// The member of that name, the last one when there are several; null when there is none.
    const pmxJsonNode *member(std::string_view name) const;
};

/// The first value of a JSON text; text after it is ignored.
class pmxJsonDocument {
public:
    /**
     * The value of the text, which must live as long as the nodes are used. Null when the text is
     * malformed or nested more than 100 levels deep. A number too large for a double becomes null.
     */
    static std::shared_ptr<const pmxJsonNode> parse(std::string_view text);
    /// The same of a text that the nodes keep alive.
    static std::shared_ptr<const pmxJsonNode> parseOwned(std::string &&text);

private:
    class Context;

    static std::shared_ptr<const pmxJsonNode>
    parseInto(const std::shared_ptr<pmxJsonDocument> &document, std::string_view text);
    /// Strings that were unescaped, so that the input does not contain them. Their addresses are
    /// stable.
    std::string &keep(std::string_view text) { return m_keptTexts.emplace_front(text); }

    std::string m_ownText;
    std::forward_list<std::string> m_keptTexts;
    std::vector<pmxJsonNode> m_nodes;
};
