#pragma once

#include <QByteArray>

/// Message bodies in Base64: the standard alphabet (RFC 4648, section 4), padded, without line
/// breaks.
namespace Base64Transport {

QByteArray encode(const QByteArray &bytes);

/// Lenient at the end: padding, or any character outside the alphabet at the beginning of a group
/// of four (also a zero byte), ends the text. Anywhere else such a character, or the end of the
/// text, is an error, and the result is empty.
QByteArray decode(const QByteArray &text);

} // namespace Base64Transport
