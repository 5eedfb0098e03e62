#pragma once

#include <QByteArray>
#include <QUrl>

/// The playlists of streams, see PlaylistText.
namespace KovPlaylist {

/// Longer texts are not treated as playlists.
constexpr qint64 maxBytes = 16 << 20;

/// Whether a text with this beginning may be a playlist.
bool mayBegin(const QByteArray &text);
bool isPlaylist(const QByteArray &text);

/// Rewrites the references of the playlist from that URL: "https://host/path" becomes prefix +
/// "https/host/path". Relative references stay relative.
QByteArray relocated(const QByteArray &text, const QUrl &url, const QByteArray &prefix);
/// The same for one reference; "data:" URLs stay.
QByteArray relocatedReference(const QByteArray &reference, const QUrl &url,
                              const QByteArray &prefix);

} // namespace KovPlaylist
