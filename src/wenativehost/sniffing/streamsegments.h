#pragma once

#include "networkrequest.h"

#include <string>
#include <unordered_set>

/**
 * Knows the pieces of the streams whose playlists were seen on one page: what lies beside or below
 * a playlist, what has a segment's file name, and what a playlist's own lines name.
 */
class StreamSegments {
public:
    /// A playlist that was seen, again where its text became known later.
    void addPlaylist(const NetworkRequest &playlist);

    /// Whether a request for something that is no playlist fetches a piece of a stream.
    bool isSegment(const std::string &url) const;
    /// Whether a playlist is part of another one: one of the qualities that a master playlist
    /// offers.
    bool isPartOfOther(const NetworkRequest &playlist) const;

private:
    /// Those of the playlists; an empty one of a playlist without a path.
    std::unordered_set<std::string> m_folders;
    std::unordered_set<std::string> m_named;
    /// The pieces of a day and more; whoever names more of them must not make the user wait.
    int m_referencesLeft = 100'000;
};
