#include "streamsegments.h"

#include <QString>
#include <QUrl>

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

/// What a line of an HLS playlist (RFC 8216, 4.1) or an attribute URI="…" in it refers to.
std::string_view referenceInLine(std::string_view line)
{
    while (!line.empty() && (line.back() == '\r' || line.back() == ' '))
        line.remove_suffix(1);
    if (!line.starts_with('#'))
        return line;
    // It names the other qualities, of which none is part of another one.
    if (line.starts_with("#EXT-X-RENDITION-REPORT"))
        return {};
    constexpr std::string_view attribute = "URI=\"";
    const size_t begin = line.find(attribute);
    if (begin == std::string_view::npos)
        return {};
    const std::string_view value = line.substr(begin + attribute.size());
    return value.substr(0, value.find('"'));
}

} // namespace

void StreamSegments::addPlaylist(const NetworkRequest &playlist)
{
    m_folders.emplace(folderOf(playlist.url));
    if (!playlist.playlist.starts_with("#EXTM3U"))
        return;
    const QUrl base(QString::fromStdString(playlist.url));
    std::string_view rest = playlist.playlist;
    while (!rest.empty() && m_referencesLeft > 0) {
        const size_t end = rest.find('\n');
        const std::string_view reference = referenceInLine(rest.substr(0, end));
        rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
        if (reference.empty())
            continue;
        --m_referencesLeft;
        const QUrl relative(
            QString::fromUtf8(reference.data(), static_cast<qsizetype>(reference.size())));
        if (const QUrl named = base.resolved(relative); named != base)
            m_named.insert(named.toEncoded().toStdString());
    }
}

bool StreamSegments::isSegment(const std::string &url) const
{
    if (m_folders.empty())
        return false;
    if (hasSegmentSuffix(url) || m_named.contains(url))
        return true;
    return std::any_of(m_folders.begin(), m_folders.end(), [&url](const std::string &folder) {
        return !folder.empty() && url.starts_with(folder);
    });
}

bool StreamSegments::isPartOfOther(const NetworkRequest &playlist) const
{
    if (m_named.contains(playlist.url))
        return true;
    // Two streams may lie beside each other; what lies below a playlist belongs to it.
    const std::string_view folder = folderOf(playlist.url);
    return std::any_of(m_folders.begin(), m_folders.end(), [folder](const std::string &other) {
        return !other.empty() && folder.size() > other.size() && folder.starts_with(other);
    });
}
