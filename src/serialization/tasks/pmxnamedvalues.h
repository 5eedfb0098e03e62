#pragma once

#include <algorithm>
#include <istream>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

/// The values of an enumeration with the names that stand for them in JSON.
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

    /// Writes the name; nothing for a value without one.
    std::ostream &write(std::ostream &stream, Enum value) const
    {
        const std::string *text = name(value);
        return text ? stream << *text : stream;
    }

    /// Takes one word. Sets the fail state when it is no name; upper and lower case differ.
    std::istream &read(std::istream &stream, Enum &value) const
    {
        std::string word;
        if (!(stream >> word))
            return stream;
        const auto it = std::find_if(m_values.cbegin(), m_values.cend(),
                                     [&word](const auto &pair) { return pair.second == word; });
        if (it == m_values.cend())
            stream.setstate(std::ios::failbit);
        else
            value = it->first;
        return stream;
    }

private:
    std::vector<std::pair<Enum, std::string>> m_values;
};
