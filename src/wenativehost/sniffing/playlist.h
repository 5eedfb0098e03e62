#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/**
 * What is kept of a playlist's text, an HLS (RFC 8216) or a DASH one (ISO/IEC 23009-1): enough to
 * know the pieces of its stream again. A text that is neither gives an empty one.
 */
class Playlist {
public:
    /// Enough for the segments of a whole day; a longer list must not make the user wait.
    static constexpr int maxReferences = 100'000;

    Playlist() = default;
    /// url: where the text is from, which what it names is relative to.
    Playlist(const std::string &text, const std::string &url);

    /// Whether an HLS playlist names the URL, in a line or an attribute.
    bool names(const std::string &url) const;
    /// The lines of the tallest picture that it offers; 0 when it does not tell.
    int height() const { return m_height; }
    /// What it holds beside its fixed size.
    size_t bytes() const { return m_named.size() * sizeof(size_t); }

private:
    void readHls(std::string_view text, const std::string &url);
    void readDash(const std::string &text);

    /// Hashes of URLs, in ascending order: their texts would take ten times the room.
    std::vector<size_t> m_named;
    int m_height = 0;
};
