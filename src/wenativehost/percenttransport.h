#pragma once

#include <QByteArray>

/// Message bodies with bytes written as "%" and two hexadecimal digits.
namespace PercentTransport {

/// Keeps ASCII letters and digits only; the hexadecimal digits are in upper case.
QByteArray encode(const QByteArray &bytes);

/// What is not "%" and two hexadecimal digits is kept as it is. A "%" among the last two bytes is
/// kept too, and "+" is no space.
QByteArray decode(const QByteArray &text);

} // namespace PercentTransport
