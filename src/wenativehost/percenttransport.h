#pragma once

#include <QByteArray>

/// Message bodies with bytes written as "%" and two hexadecimal digits.
namespace PercentTransport {

/// Keeps ASCII letters and digits only; the hexadecimal digits are in upper case.
QByteArray encode(const QByteArray &bytes);

/// Anything but "%" and two hexadecimal digits is kept unchanged. So is a "%" among the last two
/// bytes; "+" is not a space.
QByteArray decode(const QByteArray &text);

} // namespace PercentTransport
