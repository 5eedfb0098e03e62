#pragma once

#include <QByteArray>
#include <QUrl>

/// The playlists of streams: HLS (RFC 8216) and DASH (ISO/IEC 23009-1).
namespace KovPlaylist {

/// Longer ones are none.
constexpr qint64 maxBytes = 16 << 20;
/// So much of a text tells whether it may be one.
constexpr qint64 beginningBytes = 16;

/// Whether a text that begins like this may be one.
bool mayBegin(const QByteArray &text);
bool isPlaylist(const QByteArray &text);
bool isHls(const QByteArray &text);
/// Whether a file of that name is likely to be one.
bool isName(const QString &name);

/// The playlist from that URL with all it refers to below the prefix: "https://host/path" becomes
/// prefix + "https/host/path". What is relative to the playlist stays so.
QByteArray relocated(const QByteArray &text, const QUrl &url, const QByteArray &prefix);
/// The same for one reference; what a URL itself holds ("data:") stays.
QByteArray relocatedReference(const QByteArray &reference, const QUrl &url,
                              const QByteArray &prefix);

} // namespace KovPlaylist
