// Reads an arbitrary text as a message from the extension. A task that could be read must not
// change when it is written and read again. The nodes of a text are compared with the JSON
// library's own tree: for the text itself, and for one generated from its bytes, which is more
// often well-formed.

#include "pmxjsondocument.h"
#include "pmxjsonserializeobject.h"
#include "pmxkovbhipctask.h"
#include "require.h"

#include <picojson.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <string>

namespace {

const char *const TypeMismatch =
    R"x("type mismatch! call is<type>() before get<type>()" && is<object>())x";

std::string written(pmxKovBhIpcTask &task)
{
    std::ostringstream out;
    require(pmxJsonSerializeObject(task, out, 0));
    // In the library's format.
    picojson::value tree;
    require(picojson::parse(tree, out.str()).empty() && tree.serialize() == out.str());
    return out.str();
}

bool isSame(const pmxJsonNode &node, const picojson::value &value)
{
    switch (node.kind) {
    case pmxJsonNode::Kind::Null:
        return value.is<picojson::null>();
    case pmxJsonNode::Kind::Bool:
        return value.is<bool>() && value.get<bool>() == node.boolean;
    case pmxJsonNode::Kind::Number:
        return value.is<double>() && value.get<double>() == node.number;
    case pmxJsonNode::Kind::String:
        return value.is<std::string>() && value.get<std::string>() == node.text;
    case pmxJsonNode::Kind::Array: {
        if (!value.is<picojson::array>())
            return false;
        const auto &items = value.get<picojson::array>();
        auto item = items.cbegin();
        const pmxJsonNode *child = node.firstChild();
        for (; child != node.end() && item != items.cend(); child = child->next(), ++item) {
            if (!isSame(*child, *item))
                return false;
        }
        return child == node.end() && item == items.cend();
    }
    case pmxJsonNode::Kind::Object:
        break;
    }
    if (!value.is<picojson::object>())
        return false;
    const auto &members = value.get<picojson::object>();
    for (const pmxJsonNode *child = node.firstChild(); child != node.end(); child = child->next()) {
        if (!members.contains(std::string(child->key)))
            return false;
    }
    return std::all_of(members.cbegin(), members.cend(), [&node](const auto &member) {
        const pmxJsonNode *const child = node.member(member.first);
        return child && isSame(*child, member.second);
    });
}

void compareWithTree(const std::string &text)
{
    const auto node = pmxJsonDocument::parse(text);
    picojson::value tree;
    std::string error;
    try {
        picojson::parse(tree, text.cbegin(), text.cend(), &error);
    } catch (const std::overflow_error &) {
        return; // a number that is too large for a double
    }
    // The library limits the depth of arrays only.
    if (node || error.empty())
        require(node
                    ? error.empty() && isSame(*node, tree)
                    : std::count_if(text.cbegin(), text.cend(), [](char c) {
                          return c == '{' || c == '[';
                      }) > 100);
}

/// Generates mostly valid JSON from the bytes; at their end, every choice is the first one.
class TextBuilder {
public:
    TextBuilder(const std::uint8_t *data, std::size_t size) : m_next(data), m_end(data + size) { }

    std::string value(int depth = 0)
    {
        static constexpr const char *plain[] = {
            "null", "true", "false", "0", "-1.5e3", "1e999", "12345678901234567890",
            "-",    "tru",  "\"\""};
        switch (depth > 5 ? 0 : byte() % 5) {
        case 1:
            return text();
        case 2:
            return list('[', ']', [&] { return value(depth + 1); });
        case 3:
        case 4:
            return list('{', '}', [&] { return text() + blank() + ':' + value(depth + 1); });
        default:
            return blank() + plain[byte() % std::size(plain)] + blank();
        }
    }

private:
    unsigned byte() { return m_next == m_end ? 0 : *m_next++; }
    std::string blank() { return byte() % 8 == 1 ? " \n\t" : ""; }

    std::string text()
    {
        static constexpr const char *parts[] = {
            "a",       "id", "type", "\\n",  "\\\"", "\\u00e9", "\xc3\xa9", "\\ud83d\\ude00",
            "\\ud83d", "/",  "\\/",  "\x01", "\x7f", "\\u0000", "ab"};
        std::string text = "\"";
        for (unsigned count = byte() % 4; count > 0; --count)
            text += parts[byte() % 64 % std::size(parts)];
        return text + '"';
    }

    template <typename MakeItem> std::string list(char begin, char end, MakeItem makeItem)
    {
        std::string text(1, begin);
        for (unsigned count = byte() % 5; count > 0; --count)
            text += makeItem() + (count > 1 ? "," : "");
        return text + end;
    }

    const std::uint8_t *m_next;
    const std::uint8_t *const m_end;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::string text(reinterpret_cast<const char *>(data), size);
    compareWithTree(text);
    compareWithTree(TextBuilder(data, size).value());
    pmxKovBhIpcTask task;
    bool read = false;
    try {
        read = pmxJsonSerializeObject(task, text, 0);
    } catch (const std::runtime_error &error) {
        require(std::string(error.what()) == TypeMismatch);
    }
    if (read) {
        const std::string first = written(task);
        pmxKovBhIpcTask again;
        require(pmxJsonSerializeObject(again, first, 0));
        require(written(again) == first);
    }
    return 0;
}
