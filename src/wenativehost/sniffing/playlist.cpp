#include "playlist.h"

#include <QString>
#include <QUrl>
#include <QXmlStreamReader>

#include <algorithm>
#include <charconv>
#include <functional>

namespace {

std::string_view takeLine(std::string_view &rest)
{
    const size_t end = rest.find('\n');
    std::string_view line = rest.substr(0, end);
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    while (line.ends_with('\r') || line.ends_with(' '))
        line.remove_suffix(1);
    return line;
}

/// The reference in a line of an HLS playlist (RFC 8216, 4.1) or in its attribute URI="…".
std::string_view referenceInLine(std::string_view line)
{
    if (!line.starts_with('#'))
        return line;
    // It names the renditions in other qualities, none of which is part of another one.
    if (line.starts_with("#EXT-X-RENDITION-REPORT"))
        return {};
    constexpr std::string_view attribute = "URI=\"";
    const size_t begin = line.find(attribute);
    if (begin == std::string_view::npos)
        return {};
    const std::string_view value = line.substr(begin + attribute.size());
    return value.substr(0, value.find('"'));
}

/// The height in a line with an attribute RESOLUTION=1920x1080 (RFC 8216, 4.3.4.2); 0 for others.
int heightInLine(std::string_view line)
{
    constexpr std::string_view attribute = "RESOLUTION=";
    const size_t begin = line.find(attribute);
    const size_t times = begin == std::string_view::npos ? begin : line.find('x', begin);
    if (!line.starts_with("#EXT-X-STREAM-INF:") || times == std::string_view::npos)
        return 0;
    int height = 0;
    std::from_chars(line.data() + times + 1, line.data() + line.size(), height);
    return height;
}

} // namespace

Playlist::Playlist(const std::string &text, const std::string &url)
{
    if (text.starts_with("#EXTM3U"))
        readHls(text, url);
    else
        readDash(text);
}

bool Playlist::names(const std::string &url) const
{
    return std::binary_search(m_named.begin(), m_named.end(), std::hash<std::string>()(url));
}

void Playlist::readHls(std::string_view text, const std::string &url)
{
    const QUrl base(QString::fromStdString(url));
    while (!text.empty() && m_named.size() < maxReferences) {
        const std::string_view line = takeLine(text);
        m_height = std::max(m_height, heightInLine(line));
        const std::string_view reference = referenceInLine(line);
        if (reference.empty())
            continue;
        const QUrl relative(
            QString::fromUtf8(reference.data(), static_cast<qsizetype>(reference.size())));
        if (const QUrl named = base.resolved(relative); named != base)
            m_named.push_back(
                std::hash<std::string>()(named.toEncoded(QUrl::RemoveFragment).toStdString()));
    }
    std::sort(m_named.begin(), m_named.end());
    m_named.erase(std::unique(m_named.begin(), m_named.end()), m_named.end());
    m_named.shrink_to_fit();
}

void Playlist::readDash(const std::string &text)
{
    QXmlStreamReader xml(QByteArray::fromStdString(text));
    while (!xml.atEnd()) {
        if (xml.readNext() == QXmlStreamReader::StartElement)
            m_height = std::max(m_height, xml.attributes().value(QLatin1String("height")).toInt());
    }
}
