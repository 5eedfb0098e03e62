#pragma once

#include "networkrequest.h"

#include <string>
#include <vector>

/**
 * Recognizes the segments of the streams whose playlists were seen on one page: URLs in or below
 * the folder of a playlist, those with a segment's file name, and those that a playlist names. The
 * playlists' requests must outlive it.
 */
class StreamSegments {
public:
    void addPlaylist(const NetworkRequest &playlist);

    /// Whether a request for something other than a playlist fetches a segment of a stream.
    bool isSegment(const std::string &url) const;
    /// Whether a playlist is part of another one: one of the qualities that a master playlist
    /// offers.
    bool isPartOfOther(const NetworkRequest &playlist) const;

private:
    bool isNamed(const std::string &url) const;

    std::vector<const NetworkRequest *> m_playlists;
    /// The folders of the playlists, each once; empty for a playlist without a path.
    std::vector<std::string_view> m_folders;
};
