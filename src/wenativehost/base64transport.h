#pragma once

#include <QByteArray>

/// Message bodies in Base64: the standard alphabet (RFC 4648, section 4), padded, without line
/// breaks.
namespace Base64Transport {

QByteArray encode(const QByteArray &bytes);

/// Lenient at the end: a zero byte or any other character outside the alphabet ends the text when
/// it stands where a group of four begins, and so does the padding. Anywhere else such a character,
/// or the end of the text, is an error, and the result is empty.
QByteArray decode(const QByteArray &text);

} // namespace Base64Transport
