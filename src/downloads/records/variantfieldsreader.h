#pragma once

#include "variantvalues.h"

#include <QDateTime>
#include <QString>
#include <QVariant>
#include <QVariantHash>

#include <type_traits>

/// Decodes a record from a variant hash, field by field. VariantFieldsWriter documents the
/// functions. A missing key is read as an invalid variant, which makes the member zero or empty.
template <typename Record> class VariantFieldsReader {
public:
    /// Both must live as long as the reader.
    VariantFieldsReader(const QVariantHash &hash, Record &record) : m_hash(hash), m_record(record)
    {
    }

    template <typename Owner, typename T> void value(const QString &key, T Owner::*member)
    {
        readVariantValue(variant(key), m_record.*member);
    }

    template <typename Owner, typename T> void valueIfPresent(const QString &key, T Owner::*member)
    {
        if (m_hash.contains(key))
            value(key, member);
    }

    template <typename Owner, typename T>
    void numberOr(const QString &key, T Owner::*member, std::type_identity_t<T> fallback)
    {
        static_assert(std::is_same_v<T, int> || std::is_same_v<T, qint64>);
        bool isNumber = false;
        if constexpr (std::is_same_v<T, int>)
            m_record.*member = variant(key).toInt(&isNumber);
        else
            m_record.*member = variant(key).toLongLong(&isNumber);
        if (!isNumber)
            m_record.*member = fallback;
    }

    template <typename Owner, typename T> void valueUnlessZero(const QString &key, T Owner::*member)
    {
        value(key, member);
    }

    template <typename Owner> void millisecondsIfValid(const QString &key, QDateTime Owner::*member)
    {
        bool isNumber = false;
        const qint64 milliseconds = variant(key).toLongLong(&isNumber);
        m_record.*member =
            isNumber ? QDateTime::fromMSecsSinceEpoch(milliseconds, Qt::UTC) : QDateTime();
    }

    template <typename Owner, typename T, typename Encode, typename Decode>
    void value(const QString &key, T Owner::*member, Encode /*encode*/, Decode decode)
    {
        m_record.*member = decode(variant(key));
    }

    template <typename Owner, typename T, typename Decode>
    void record(const QString &key, T Owner::*member, Decode decode)
    {
        m_record.*member = decode(variant(key).toHash());
    }

    template <typename Owner, typename T, typename Decode>
    void recordIfPresent(const QString &key, T Owner::*member, Decode decode)
    {
        if (m_hash.contains(key))
            record(key, member, decode);
    }

private:
    const QVariant &variant(const QString &key) const
    {
        static const QVariant missing;
        const auto found = m_hash.constFind(key);
        return found == m_hash.cend() ? missing : *found;
    }

    const QVariantHash &m_hash;
    Record &m_record;
};
