#pragma once

#include <algorithm>
#include <istream>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// The values of an enumeration with their names in JSON.
template <typename Enum> class pmxNamedValues {
public:
    explicit pmxNamedValues(std::vector<std::pair<Enum, std::string>> values)
        : m_values(std::move(values))
    {
    }

    /// Null when the value has no name.
    const std::string *name(Enum value) const
    {
        const auto it = std::find_if(m_values.cbegin(), m_values.cend(),
                                     [value](const auto &pair) { return pair.first == value; });
        return it == m_values.cend() ? nullptr : &it->second;
    }

    /// Null if there is no such name. Case-sensitive.
    const Enum *value(std::string_view name) const
    {
        const auto it = std::find_if(m_values.cbegin(), m_values.cend(),
                                     [name](const auto &pair) { return pair.second == name; });
        return it == m_values.cend() ? nullptr : &it->first;
    }

    /// Writes the name; nothing for a value without one.
    std::ostream &write(std::ostream &stream, Enum value) const
    {
        const std::string *text = name(value);
        return text ? stream << *text : stream;
    }

    /// Reads one word. Sets the fail state if it is no name.
    std::istream &read(std::istream &stream, Enum &read) const
    {
        std::string word;
        if (!(stream >> word))
            return stream;
        if (const Enum *const named = value(word))
            read = *named;
        else
            stream.setstate(std::ios::failbit);
        return stream;
    }

private:
    std::vector<std::pair<Enum, std::string>> m_values;
};
