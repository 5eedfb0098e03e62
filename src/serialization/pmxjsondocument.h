#pragma once

#include <cstddef>
#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

/**
 * A value of a JSON text: a view into the text, and no copy of it. The values of a text stand one
 * after another in its order, an array or an object before what it holds.
 */
struct pmxJsonNode {
    enum class Kind : unsigned char { Null, Bool, Number, String, Array, Object };

    /// The name, if it is the member of an object.
    std::string_view key;
    /// Of a string, without escape sequences.
    std::string_view text;
    double number = 0;
    /// How many nodes there are up to the next one that is not within this one: itself and all that
    /// it holds.
    std::size_t span = 1;
    Kind kind = Kind::Null;
    bool boolean = false;

    const pmxJsonNode *firstChild() const { return this + 1; }
    const pmxJsonNode *next() const { return this + span; }
    const pmxJsonNode *end() const { return this + span; }
    /// The member of that name, the last one when there are several; null when there is none.
    const pmxJsonNode *member(std::string_view name) const;
};

/// The first value of a JSON text; what follows it is not looked at.
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
    /// A text that stands nowhere as it is. Its address stays.
    std::string &keep(std::string_view text) { return m_keptTexts.emplace_back(text); }

    std::string m_ownText;
    std::deque<std::string> m_keptTexts;
    std::vector<pmxJsonNode> m_nodes;
};
