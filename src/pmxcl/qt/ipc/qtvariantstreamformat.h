#pragma once

#include <QDataStream>
#include <QtGlobal>

/// How QDataStream writes variants, see "Serializing Qt Data Types".
namespace QtVariantStreamFormat {

constexpr QDataStream::Version version = QDataStream::Qt_5_12;

/// The length that stands for a null string or byte array.
constexpr quint32 nullLength = 0xFFFFFFFF;

} // namespace QtVariantStreamFormat
