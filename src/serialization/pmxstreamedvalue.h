#pragma once

#include <charconv>
#include <istream>
#include <locale>
#include <ostream>
#include <sstream>
#include <string>
#include <string_view>
#include <system_error>
#include <type_traits>
#include <utility>

/// Integers that streams read and write as digits: the 8-bit ones count as characters there.
template <typename T>
constexpr bool
    pmxIsPlainNumber = std::is_integral_v<T> && (std::is_same_v<T, bool> || sizeof(T) > 2);

/**
 * Values as texts, in the form of standard streams: 5 is "5", true is "1". Always in the classic
 * locale. An enumeration without stream operators is written as its number.
 */
template <typename T> std::string pmxTextFromValue(const T &value)
{
    if constexpr (pmxIsPlainNumber<T>)
        return std::to_string(value);
    std::ostringstream stream;
    stream.imbue(std::locale::classic());
    if constexpr (std::is_enum_v<T> && !requires(std::istream & in, T & read) { in >> read; })
        stream << static_cast<std::underlying_type_t<T>>(value);
    else
        stream << value;
    return stream.str();
}

/// Fast path: reads a text that consists only of the digits of such a number, as most do. False for
/// any other, which a stream may still be able to read.
template <typename T> bool pmxNumberFromDigits(std::string_view text, T &value)
{
    if constexpr (std::is_same_v<T, bool>) {
        if (text != "0" && text != "1")
            return false;
        value = text == "1";
        return true;
    } else {
        if (text.empty() || text.front() < '0' || text.front() > '9')
            return false;
        T read{};
        const char *const end = text.data() + text.size();
        const auto [parsedEnd, error] = std::from_chars(text.data(), end, read);
        if (error != std::errc() || parsedEnd != end)
            return false;
        value = read;
        return true;
    }
}

/// This thread's stream over the text, in the classic locale; valid until the next call. The stream
/// is reused: constructing one costs many times as much as reading a number.
std::istream &pmxStreamOverText(std::string_view text);

/**
 * The reverse. Blanks before the value and anything after it are ignored; a negative number read
 * as unsigned wraps around, so that "-1" has all bits set. False when there is no value of that
 * type, which is then left as it was.
 */
template <typename T> bool pmxValueFromText(const std::string &text, T &value)
{
    if constexpr (pmxIsPlainNumber<T>) {
        if (pmxNumberFromDigits(text, value))
            return true;
    }
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
