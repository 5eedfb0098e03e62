#include "pmxkovbhipcpagemediaresponse.h"

#include "mediakind.h"
#include "pmxserializationiostream.h"

#include <QUrl>

#include <utility>

namespace {

/// The message is only written, and then it always has all members.
constexpr bool required = true;

std::string kindName(MediaKind kind)
{
    switch (kind) {
    case MediaKind::VideoMediaKind:
        return "video";
    case MediaKind::AudioMediaKind:
        return "audio";
    case MediaKind::StreamMediaKind:
        return "stream";
    case MediaKind::NoMediaKind:
        break;
    }
    return {};
}

/// Its title for the user: the name of its file, else of its server.
std::string titleOf(const MediaRequest &media)
{
    if (!media.suggestedName.empty())
        return media.suggestedName;
    const std::string fileName = fileNameOfUrl(media.request.url).toStdString();
    return fileName.empty() ? QUrl(QString::fromStdString(media.request.url)).host().toStdString()
                            : fileName;
}

} // namespace

pmxKovBhIpcPageMediaResponse::pmxKovBhIpcPageMediaResponse(const std::string &pageUrl)
    : m_pageUrl(pageUrl), m_textBytes(pageUrl.size())
{
    type = "page_media";
}

bool pmxKovBhIpcPageMediaResponse::add(const MediaRequest &media, bool isPart)
{
    const NetworkRequest &request = media.request;
    // Its title comes from its URL or its headers.
    const size_t playlist = request.playlist ? request.playlist->bytes() : 0;
    const size_t bytes =
        request.textBytes() - playlist + request.url.size() + media.suggestedName.size();
    if (m_textBytes + bytes > maxTextBytes)
        return false;
    m_textBytes += bytes;
    m_entries.push_back({media, isPart});
    return true;
}

bool pmxKovBhIpcPageMediaResponse::Serialize(pmxSerializationIoStream *stream, unsigned int flags)
{
    const auto page = stream->SelectOrCreateNode("page_media", false);
    if (!page || !page->SerializeValue("page", m_pageUrl, required))
        return false;
    for (Entry &entry : m_entries) {
        const auto node = page->SelectOrCreateNode("media", true);
        if (!node || !serialize(node.get(), entry))
            return false;
    }
    return pmxKovBhIpcTaskResponse::Serialize(stream, flags);
}

bool pmxKovBhIpcPageMediaResponse::serialize(pmxSerializationIoStream *node, Entry &entry)
{
    NetworkRequest &request = entry.media.request;
    std::string kind = kindName(entry.media.kind);
    std::string title = titleOf(entry.media);
    std::string size = entry.media.size ? std::to_string(*entry.media.size) : "-1";
    const int height = request.playlist ? request.playlist->height() : 0;
    std::string quality = height > 0 ? std::to_string(height) + "p" : std::string();
    std::string status = std::to_string(request.status);
    bool isUnread = entry.media.kind == MediaKind::StreamMediaKind && !request.playlist
        && request.state == NetworkRequest::State::Completed;
    const std::pair<const char *, std::string &> texts[] = {
        {"requestId", request.id},
        {"url", request.url},
        {"originalUrl", request.originalUrl},
        {"method", request.method},
        {"requestHeaders", request.requestHeaders},
        {"status", status},
        {"responseHeaders", request.responseHeaders},
        {"kind", kind},
        {"title", title},
        {"size", size},
        {"quality", quality},
    };
    for (const auto &[name, text] : texts) {
        if (!node->SerializeValue(name, text, required))
            return false;
    }
    return node->SerializeBoolValue("part", entry.isPart, required)
        && node->SerializeBoolValue("unread", isUnread, required);
}
