#pragma once

#include <istream>
#include <locale>
#include <ostream>
#include <sstream>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

/**
 * Values as texts, in the form that standard streams give them: 5 is "5", true is "1". Always in
 * the classic locale. An enumeration without stream operators of its own goes as its number.
 */
template <typename T> std::string pmxTextFromValue(const T &value)
{
    std::ostringstream stream;
    stream.imbue(std::locale::classic());
    if constexpr (std::is_enum_v<T> && !requires(std::istream & in, T & read) { in >> read; })
        stream << static_cast<std::underlying_type_t<T>>(value);
    else
        stream << value;
    return stream.str();
}

/// This thread's stream over the text, in the classic locale; good until the next call. One stream
/// serves all texts: making one costs many times what reading a number does.
std::istream &pmxStreamOverText(std::string_view text);

/**
 * The reverse. Blanks before the value and anything after it are ignored; a negative number read
 * as unsigned wraps around, so that "-1" has all bits set. False when there is no value of that
 * type, which is then left as it was.
 */
template <typename T> bool pmxValueFromText(const std::string &text, T &value)
{
    std::istream &stream = pmxStreamOverText(text);
    if constexpr (std::is_enum_v<T> && !requires(std::istream & in, T & read) { in >> read; }) {
        std::underlying_type_t<T> number{};
        if (!(stream >> number))
            return false;
        value = static_cast<T>(number);
    } else {
        T read{};
        if (!(stream >> read))
            return false;
        value = std::move(read);
    }
    return true;
}
