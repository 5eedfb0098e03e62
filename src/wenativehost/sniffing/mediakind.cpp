#include "mediakind.h"

#include "abstractfiletypedetector.h"
#include "httpheaderblock.h"
#include "playlisttext.h"

#include <QUrl>

#include <algorithm>
#include <array>

namespace {

// RFC 8216 (HLS), ISO/IEC 23009-1 (DASH), and older or unofficial names that are in use.
constexpr std::array<std::string_view, 7> playlistTypes = {
    "application/vnd.apple.mpegurl",
    "application/x-mpegurl",
    "application/mpegurl",
    "audio/mpegurl",
    "audio/x-mpegurl",
    "application/dash+xml",
    "video/vnd.mpeg.dash.mpd",
};

MediaKind kindOfMediaType(std::string_view type)
{
    if (std::find(playlistTypes.begin(), playlistTypes.end(), type) != playlistTypes.end())
        return MediaKind::StreamMediaKind;
    if (type.starts_with("video/") || type == "application/mp4" || type == "application/ogg")
        return MediaKind::VideoMediaKind;
    if (type.starts_with("audio/"))
        return MediaKind::AudioMediaKind;
    return MediaKind::NoMediaKind;
}

} // namespace

MediaKind mediaKindOf(const std::string &url, const HttpHeaderBlock &responseHeaders)
{
    const auto type = responseHeaders.mediaType();
    if (type && type->name != "application/octet-stream" && type->name != "binary/octet-stream")
        return kindOfMediaType(type->name);
    if (const QString suggested = responseHeaders.fileName(); !suggested.isEmpty())
        return mediaKindOfFileName(suggested);
    return mediaKindOfFileName(fileNameOfUrl(url));
}

MediaKind mediaKindOfFileName(const QString &fileName)
{
    if (!fileName.contains(u'.'))
        return MediaKind::NoMediaKind;
    if (PlaylistText::isFileName(fileName))
        return MediaKind::StreamMediaKind;
    switch (AbstractFileTypeDetector().typeFromFileName(fileName)) {
    case AbstractFileType::Video:
        return MediaKind::VideoMediaKind;
    case AbstractFileType::Music:
        return MediaKind::AudioMediaKind;
    default:
        return MediaKind::NoMediaKind;
    }
}

QString fileNameOfUrl(const std::string &url)
{
    return QUrl(QString::fromStdString(url)).fileName(QUrl::FullyDecoded);
}
