#pragma once

#include <cstddef>
#include <list>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

/**
 * URLs with a value each. Beyond maxUrls of them, or maxBytes of their texts, the one touched
 * longest ago is dropped, so that no page can make them grow. Belongs to one thread.
 */
template <typename Value> class RecentUrls {
public:
    static constexpr size_t maxUrls = 2000;
    static constexpr size_t maxBytes = size_t{4} * 1024 * 1024;

    /// Null if it is not (or no longer) known. Valid until the next call of a non-const function.
    const Value *find(const std::string &url) const
    {
        const auto known = m_byUrl.find(url);
        return known == m_byUrl.end() ? nullptr : &known->second->second;
    }
    /// The value of the URL, which is the latest now; a new one begins with Value(). Nothing is
    /// remembered of a URL that is longer than all of them may be: its value is thrown away.
    Value &touch(const std::string &url)
    {
        if (const auto known = m_byUrl.find(url); known != m_byUrl.end()) {
            m_oldestFirst.splice(m_oldestFirst.end(), m_oldestFirst, known->second);
            return known->second->second;
        }
        if (url.size() > maxBytes)
            return m_thrownAway = Value();
        while (m_byUrl.size() >= maxUrls || m_bytes + url.size() > maxBytes)
            remove(std::string(m_oldestFirst.front().first));
        const auto added = m_oldestFirst.emplace(m_oldestFirst.end(), url, Value());
        m_byUrl.emplace(added->first, added);
        m_bytes += url.size();
        return added->second;
    }
    void remove(const std::string &url)
    {
        const auto known = m_byUrl.find(url);
        if (known == m_byUrl.end())
            return;
        const auto entry = known->second;
        m_bytes -= url.size();
        m_byUrl.erase(known); // first, since its key is a view of the entry's text
        m_oldestFirst.erase(entry);
    }
    /// All of them, oldest first; none is left.
    std::list<std::pair<std::string, Value>> takeAll()
    {
        m_byUrl.clear();
        m_bytes = 0;
        return std::exchange(m_oldestFirst, {});
    }

private:
    using Entries = std::list<std::pair<std::string, Value>>;

    Entries m_oldestFirst;
    std::unordered_map<std::string_view, typename Entries::iterator> m_byUrl;
    size_t m_bytes = 0;
    Value m_thrownAway{};
};
