#include "streamsegments.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace {

/// The URL without query and fragment.
std::string_view pathPart(std::string_view url) { return url.substr(0, url.find_first_of("?#")); }

/// "scheme://host/folder/" of "scheme://host/folder/file?query"; empty if there is no path.
std::string_view folderOf(std::string_view url)
{
    const std::string_view path = pathPart(url);
    const size_t authority = path.find("//");
    const size_t slash = path.rfind('/');
    if (authority == std::string_view::npos || slash < authority + 2)
        return {};
    return path.substr(0, slash + 1);
}

bool hasSegmentSuffix(std::string_view url)
{
    static constexpr std::array<std::string_view, 6> suffixes = {".ts",   ".m4s",  ".m4f",
                                                                 ".cmfv", ".cmfa", ".m2ts"};
    const std::string_view path = pathPart(url);
    return std::any_of(suffixes.begin(), suffixes.end(),
                       [path](std::string_view suffix) { return path.ends_with(suffix); });
}

} // namespace

void StreamSegments::addPlaylist(const NetworkRequest &playlist)
{
    m_playlists.push_back(&playlist);
    const std::string_view folder = folderOf(playlist.url);
    if (std::find(m_folders.begin(), m_folders.end(), folder) == m_folders.end())
        m_folders.push_back(folder);
}

bool StreamSegments::isSegment(const std::string &url) const
{
    if (m_playlists.empty())
        return false;
    const auto contains = [&url](std::string_view folder) {
        return !folder.empty() && url.starts_with(folder);
    };
    return hasSegmentSuffix(url) || std::any_of(m_folders.begin(), m_folders.end(), contains)
        || isNamed(url);
}

bool StreamSegments::isPartOfOther(const NetworkRequest &playlist) const
{
    // Two streams may be in the same folder; a playlist below another one's folder belongs to it.
    const std::string_view folder = folderOf(playlist.url);
    const auto isAbove = [folder](std::string_view other) {
        return !other.empty() && folder.size() > other.size() && folder.starts_with(other);
    };
    return std::any_of(m_folders.begin(), m_folders.end(), isAbove) || isNamed(playlist.url);
}

bool StreamSegments::isNamed(const std::string &url) const
{
    return std::any_of(m_playlists.begin(), m_playlists.end(), [&url](const auto *playlist) {
        return playlist->playlist && playlist->playlist->names(url);
    });
}
