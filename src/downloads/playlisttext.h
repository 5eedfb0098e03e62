#pragma once

#include <QByteArrayView>
#include <QString>

/// What the reader of a page's playlists and the downloader of streams both know of them: HLS
/// (RFC 8216) and DASH (ISO/IEC 23009-1).
namespace PlaylistText {

/// The length of the beginning that tells the format, in bytes.
constexpr qsizetype beginningBytes = 16;

/// The beginning of a text, without what may precede the format's first word: a byte order mark
/// and white space.
QByteArrayView beginning(QByteArrayView text);
bool isHls(QByteArrayView text);

/// Takes the first line off the rest, without the white space around it and without a byte order
/// mark.
QByteArrayView takeLine(QByteArrayView &rest);

/// The part of a line of an HLS playlist that is a URL: the line (RFC 8216, 4.1) or its attribute
/// URI="..." (4.2); empty if there is none.
QByteArrayView reference(QByteArrayView line);

/// Whether a file of that name is probably a playlist.
bool isFileName(const QString &name);

} // namespace PlaylistText
