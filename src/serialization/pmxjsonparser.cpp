#include "pmxjsonparser.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int MaxDepth = picojson::DEFAULT_MAX_DEPTHS;

using Input = picojson::input<const char *>;

/// The library takes texts character by character; most of them are to be copied as they are.
class TextInput : public Input {
public:
    using Input::Input;

    /// The characters before the next one that ends the text, or is none or the beginning of an
    /// escape sequence.
    std::string_view takePlain()
    {
        const char *const begin = cur();
        cur_ = std::find_if(begin, end_, [](char c) {
            return c == '"' || c == '\\' || static_cast<unsigned char>(c) < ' ';
        });
        return {begin, cur_};
    }
};

/**
 * Builds the value that the parser reports.
 *
 * Stands in for the library's own context, which limits the depth of arrays but not that of
 * objects, so that a hostile text would exhaust the stack, and which throws on a number too large
 * for a double.
 */
class ParseContext {
public:
    ParseContext(picojson::value &out, int levelsLeft) : m_out(out), m_levelsLeft(levelsLeft) { }

    bool set_null()
    {
        m_out = picojson::value();
        return true;
    }
    bool set_bool(bool value)
    {
        m_out = picojson::value(value);
        return true;
    }
    void set_number(double value)
    {
        m_out = std::isfinite(value) ? picojson::value(value) : picojson::value();
    }
    bool parse_string(Input &in)
    {
        m_out = picojson::value(picojson::string_type, false);
        auto &text = m_out.get<std::string>();
        text = static_cast<TextInput &>(in).takePlain();
        return picojson::_parse_string(text, in);
    }
    bool parse_array_start() { return startContainer(picojson::array_type); }
    bool parse_array_item(Input &in, std::size_t)
    {
        auto &array = m_out.get<picojson::array>();
        array.emplace_back();
        return parseMember(array.back(), in);
    }
    bool parse_array_stop(std::size_t) { return true; }
    bool parse_object_start() { return startContainer(picojson::object_type); }
    bool parse_object_item(Input &in, const std::string &key)
    {
        return parseMember(m_out.get<picojson::object>()[key], in);
    }
    bool parse_object_stop() { return true; }

private:
    bool startContainer(int type)
    {
        m_out = picojson::value(type, false);
        return m_levelsLeft > 0;
    }
    bool parseMember(picojson::value &member, Input &in) const
    {
        ParseContext context(member, m_levelsLeft - 1);
        return picojson::_parse(context, in);
    }

    picojson::value &m_out;
    const int m_levelsLeft;
};

} // namespace

std::shared_ptr<const picojson::value> pmxParseJson(std::string_view text)
{
    const auto value = std::make_shared<picojson::value>();
    ParseContext context(*value, MaxDepth);
    TextInput in(text.data(), text.data() + text.size());
    return picojson::_parse(context, in) ? value : nullptr;
}
