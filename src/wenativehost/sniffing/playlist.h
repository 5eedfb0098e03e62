#pragma once

#include <QByteArrayView>

#include <cstddef>
#include <string>
#include <vector>

/**
 * A summary of a playlist's text, HLS (RFC 8216) or DASH (ISO/IEC 23009-1): enough to recognize the
 * segments of its stream. Empty for any other text.
 */
class Playlist {
public:
    /// Enough for the segments of a whole day; limits the time for a hostile list.
    static constexpr int maxReferences = 100'000;

    Playlist() = default;
    /// url: the base URL of the references in the text.
    Playlist(const std::string &text, const std::string &url);

    /// Whether an HLS playlist names the URL, in a line or an attribute.
    bool names(const std::string &url) const;
    /// The greatest height of a video that it offers, in pixels; 0 if unknown.
    int height() const { return m_height; }
    /// The memory that it uses besides its fixed size.
    size_t bytes() const { return m_named.size() * sizeof(size_t); }

private:
    void readHls(QByteArrayView text, const std::string &url);
    void readDash(const std::string &text);

    /// Hashes of URLs, in ascending order: their texts would take ten times the memory.
    std::vector<size_t> m_named;
    int m_height = 0;
};
