#pragma once

#include <algorithm>
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

    /// Null when there is no such name; upper and lower case differ.
    const Enum *value(const std::string &name) const
    {
        const auto it = std::find_if(m_values.cbegin(), m_values.cend(),
                                     [&name](const auto &pair) { return pair.second == name; });
        return it == m_values.cend() ? nullptr : &it->first;
    }

private:
    std::vector<std::pair<Enum, std::string>> m_values;
};
