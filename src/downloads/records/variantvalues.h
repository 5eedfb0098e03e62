#pragma once

#include "variantlists.h"

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringList>
#include <QUrl>
#include <QUuid>
#include <QVariant>
#include <QVariantHash>

#include <cmath>
#include <concepts>
#include <type_traits>

/// How the plain values of a record are converted to variants and back. Reading never fails: what
/// cannot be converted becomes the type's zero or empty value.

template <typename T>
concept PlainVariantValue = std::same_as<T, bool> || std::same_as<T, int> || std::
    same_as<T, quint32> || std::same_as<T, qint64> || std::same_as<T, quint64> || std::same_as<
        T, double> || std::same_as<T, QString> || std::same_as<T, QByteArray> || std::
        same_as<T, QUrl> || std::same_as<T, QDateTime> || std::same_as<T, QUuid> || std::same_as<
            T, QStringList> || std::same_as<T, QVariantHash>;

template <PlainVariantValue T> QVariant toVariantValue(const T &value)
{
    return QVariant::fromValue(value);
}

/// A port number.
inline QVariant toVariantValue(quint16 value) { return QVariant(quint32{value}); }

/// An enumeration is encoded as an int.
template <typename T>
requires std::is_enum_v<T> QVariant toVariantValue(const T &value)
{
    return QVariant(static_cast<int>(value));
}

inline QVariant toVariantValue(const QList<int> &numbers)
{
    return toVariantListWith(numbers, [](int number) { return number; });
}

inline QVariant toVariantValue(const QList<qint64> &numbers)
{
    return toVariantListWith(numbers, [](qint64 number) { return number; });
}

/// In lists, enumerations are numbers of 64 bits.
template <typename T>
requires std::is_enum_v<T> QVariant toVariantValue(const QList<T> &values)
{
    return toVariantListWith(values, [](T value) { return static_cast<qint64>(value); });
}

inline void readVariantValue(const QVariant &variant, bool &value) { value = variant.toBool(); }
inline void readVariantValue(const QVariant &variant, int &value) { value = variant.toInt(); }
inline void readVariantValue(const QVariant &variant, quint32 &value) { value = variant.toUInt(); }
inline void readVariantValue(const QVariant &variant, quint16 &value)
{
    const quint32 number = variant.toUInt();
    value = number <= 0xffff ? static_cast<quint16>(number) : quint16{0};
}
inline void readVariantValue(const QVariant &variant, qint64 &value)
{
    value = variant.toLongLong();
}
inline void readVariantValue(const QVariant &variant, quint64 &value)
{
    value = variant.toULongLong();
}
/// NaN and infinity become 0: they have no meaning in any record.
inline void readVariantValue(const QVariant &variant, double &value)
{
    const double number = variant.toDouble();
    value = std::isfinite(number) ? number : 0;
}
inline void readVariantValue(const QVariant &variant, QString &value)
{
    value = variant.toString();
}
inline void readVariantValue(const QVariant &variant, QByteArray &value)
{
    value = variant.toByteArray();
}
inline void readVariantValue(const QVariant &variant, QUrl &value) { value = variant.toUrl(); }
inline void readVariantValue(const QVariant &variant, QDateTime &value)
{
    value = variant.toDateTime();
}
inline void readVariantValue(const QVariant &variant, QUuid &value) { value = variant.toUuid(); }
inline void readVariantValue(const QVariant &variant, QStringList &value)
{
    value = variant.toStringList();
}
inline void readVariantValue(const QVariant &variant, QVariantHash &value)
{
    value = variant.toHash();
}

template <typename T>
requires std::is_enum_v<T>
void readVariantValue(const QVariant &variant, T &value)
{
    value = static_cast<T>(variant.toInt());
}

inline void readVariantValue(const QVariant &variant, QList<int> &numbers)
{
    numbers = fromVariantListWith<int>(variant.toList(),
                                       [](const QVariant &number) { return number.toInt(); });
}

inline void readVariantValue(const QVariant &variant, QList<qint64> &numbers)
{
    numbers = fromVariantListWith<qint64>(
        variant.toList(), [](const QVariant &number) { return number.toLongLong(); });
}

template <typename T>
requires std::is_enum_v<T>
void readVariantValue(const QVariant &variant, QList<T> &values)
{
    values = fromVariantListWith<T>(variant.toList(), [](const QVariant &number) {
        return static_cast<T>(number.toLongLong());
    });
}
