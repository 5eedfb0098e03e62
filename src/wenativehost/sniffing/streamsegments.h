#pragma once

#include "networkrequest.h"

#include <string>
#include <vector>

/**
 * Knows the pieces of the streams whose playlists were seen on one page: what lies beside or below
 * a playlist, what has a segment's file name, and what a playlist itself names. The playlists'
 * requests must outlive it.
 */
class StreamSegments {
public:
    void addPlaylist(const NetworkRequest &playlist);

    /// Whether a request for something that is no playlist fetches a piece of a stream.
    bool isSegment(const std::string &url) const;
    /// Whether a playlist is part of another one: one of the qualities that a master playlist
    /// offers.
    bool isPartOfOther(const NetworkRequest &playlist) const;

private:
    bool isNamed(const std::string &url) const;

    std::vector<const NetworkRequest *> m_playlists;
    /// Those of the playlists, each once; an empty one of a playlist without a path.
    std::vector<std::string_view> m_folders;
};
