#include "playlist.h"

#include "playlisttext.h"

#include <QString>
#include <QUrl>
#include <QXmlStreamReader>

#include <algorithm>
#include <charconv>
#include <functional>

namespace {

/// What a line refers to that may be part of the stream.
QByteArrayView partInLine(QByteArrayView line)
{
    // It names the renditions in other qualities, none of which is part of another one.
    return line.startsWith("#EXT-X-RENDITION-REPORT") ? QByteArrayView()
                                                      : PlaylistText::reference(line);
}

/// The height in a line with an attribute RESOLUTION=1920x1080 (RFC 8216, 4.3.4.2); 0 for others.
int heightInLine(QByteArrayView line)
{
    const qsizetype begin = line.indexOf("RESOLUTION=");
    const qsizetype times = begin < 0 ? begin : line.indexOf('x', begin);
    if (!line.startsWith("#EXT-X-STREAM-INF:") || times < 0)
        return 0;
    int height = 0;
    std::from_chars(line.data() + times + 1, line.data() + line.size(), height);
    return height;
}

} // namespace

Playlist::Playlist(const std::string &text, const std::string &url)
{
    if (PlaylistText::isHls(text))
        readHls(text, url);
    else
        readDash(text);
}

bool Playlist::names(const std::string &url) const
{
    return std::binary_search(m_named.begin(), m_named.end(), std::hash<std::string>()(url));
}

void Playlist::readHls(QByteArrayView text, const std::string &url)
{
    const QUrl base(QString::fromStdString(url));
    while (!text.isEmpty() && m_named.size() < maxReferences) {
        const QByteArrayView line = PlaylistText::takeLine(text);
        m_height = std::max(m_height, heightInLine(line));
        const QByteArrayView part = partInLine(line);
        if (part.isEmpty())
            continue;
        const QUrl relative(QString::fromUtf8(part));
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
