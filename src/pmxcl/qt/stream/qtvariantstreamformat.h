#pragma once

#include <QDataStream>
#include <QtGlobal>

/// QDataStream's format of variants, see "Serializing Qt Data Types".
namespace QtVariantStreamFormat {

constexpr QDataStream::Version version = QDataStream::Qt_5_12;

/// The length that marks a null string or byte array.
constexpr quint32 nullLength = 0xFFFFFFFF;

/// The milliseconds since midnight that mark a null time.
constexpr quint32 nullTime = 0xFFFFFFFF;

} // namespace QtVariantStreamFormat
