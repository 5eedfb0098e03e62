#pragma once

#include <QByteArray>
#include <QUrl>

/// The playlists of streams: HLS (RFC 8216) and DASH (ISO/IEC 23009-1).
namespace KovPlaylist {

/// Longer texts are not treated as playlists.
constexpr qint64 maxBytes = 16 << 20;
/// The length of the beginning that isPlaylist() needs.
constexpr qint64 beginningBytes = 16;

/// Whether a text with this beginning may be a playlist.
bool mayBegin(const QByteArray &text);
bool isPlaylist(const QByteArray &text);
bool isHls(const QByteArray &text);
/// Whether a file of that name is probably a playlist.
bool isName(const QString &name);

/// Rewrites the references of the playlist from that URL: "https://host/path" becomes prefix +
/// "https/host/path". Relative references stay relative.
QByteArray relocated(const QByteArray &text, const QUrl &url, const QByteArray &prefix);
/// The same for one reference; "data:" URLs stay.
QByteArray relocatedReference(const QByteArray &reference, const QUrl &url,
                              const QByteArray &prefix);

} // namespace KovPlaylist
