#pragma once

#include <cstddef>
#include <list>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

/**
 * An LRU map from URLs to values. Beyond maxUrls entries, or maxBytes of URL text, the least
 * recently used one is dropped, so that no page can make it grow without bound. Belongs to one
 * thread.
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
    /// The value of the URL, which becomes the most recently used one; a new entry has Value(). A
    /// URL longer than maxBytes is not stored: its value is discarded.
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
    /// Removes and returns all of them, oldest first.
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
