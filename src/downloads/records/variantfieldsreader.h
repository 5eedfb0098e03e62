#pragma once

#include "variantvalues.h"

#include <QDateTime>
#include <QString>
#include <QVariant>
#include <QVariantHash>

/// Decodes a record from a variant hash, field by field: see VariantFieldsWriter, where the meaning
/// of each function is told. A key that is missing is read as an invalid variant, which makes the
/// field zero or empty.
class VariantFieldsReader {
public:
    /// The hash must live as long as the reader.
    explicit VariantFieldsReader(const QVariantHash &hash) : m_hash(hash) { }

    template <typename T> void value(const QString &key, T &value) const
    {
        readVariantValue(variant(key), value);
    }

    template <typename T> void valueIfPresent(const QString &key, T &value) const
    {
        if (m_hash.contains(key))
            readVariantValue(variant(key), value);
    }

    void numberOr(const QString &key, int &value, int fallback) const
    {
        bool isNumber = false;
        const int number = variant(key).toInt(&isNumber);
        value = isNumber ? number : fallback;
    }

    void numberOr(const QString &key, qint64 &value, qint64 fallback) const
    {
        bool isNumber = false;
        const qint64 number = variant(key).toLongLong(&isNumber);
        value = isNumber ? number : fallback;
    }

    template <typename T> void valueUnlessZero(const QString &key, T &value) const
    {
        readVariantValue(variant(key), value);
    }

    void millisecondsIfValid(const QString &key, QDateTime &time) const
    {
        bool isNumber = false;
        const qint64 milliseconds = variant(key).toLongLong(&isNumber);
        time = isNumber ? QDateTime::fromMSecsSinceEpoch(milliseconds, Qt::UTC) : QDateTime();
    }

    template <typename T, typename Encode, typename Decode>
    void value(const QString &key, T &value, Encode /*encode*/, Decode decode) const
    {
        value = decode(variant(key));
    }

    template <typename T, typename Decode>
    void record(const QString &key, T &value, Decode decode) const
    {
        value = decode(variant(key).toHash());
    }

    template <typename T, typename Decode>
    void recordIfPresent(const QString &key, T &value, Decode decode) const
    {
        if (m_hash.contains(key))
            value = decode(variant(key).toHash());
    }

private:
    const QVariant &variant(const QString &key) const
    {
        static const QVariant missing;
        const auto found = m_hash.constFind(key);
        return found == m_hash.cend() ? missing : *found;
    }

    const QVariantHash &m_hash;
};
