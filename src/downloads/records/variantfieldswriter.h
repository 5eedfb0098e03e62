#pragma once

#include "abstracterror.h"
#include "variantvalues.h"

#include <QDateTime>
#include <QString>
#include <QVariant>
#include <QVariantHash>

#include <type_traits>

/// The record whose members have their defaults, with which others are compared.
template <typename Record> const Record &defaultRecord()
{
    static const Record record{};
    return record;
}

/**
 * Encodes a record into a variant hash, field by field. VariantFieldsReader has the same functions
 * for decoding: see variantrecordcodec.h. Each function takes the key and the member.
 */
template <typename Record> class VariantFieldsWriter {
public:
    /// If the hash already contains a record ("written"), only the members that differ from it are
    /// written; else all. All arguments must outlive the writer.
    VariantFieldsWriter(const Record &record, QVariantHash &hash, const Record *written)
        : m_record(record), m_hash(hash), m_written(written)
    {
    }

    template <typename Owner, typename T> void value(const QString &key, T Owner::*member)
    {
        insertChanged(key, member, [](const T &value) { return toVariantValue(value); });
    }

    /// Keeps the record's default when the key is missing.
    template <typename Owner, typename T> void valueIfPresent(const QString &key, T Owner::*member)
    {
        value(key, member);
    }

    /// Read as the fallback if the key is missing or its value is no number.
    template <typename Owner, typename T>
    void numberOr(const QString &key, T Owner::*member, std::type_identity_t<T> /*fallback*/)
    {
        value(key, member);
    }

    /// Not written if it is 0.
    template <typename Owner, typename T> void valueUnlessZero(const QString &key, T Owner::*member)
    {
        if (m_record.*member != 0)
            m_hash.insert(key, toVariantValue(m_record.*member));
    }

    /// In milliseconds since the epoch; not written if it is invalid.
    template <typename Owner> void millisecondsIfValid(const QString &key, QDateTime Owner::*member)
    {
        if ((m_record.*member).isValid())
            m_hash.insert(key, (m_record.*member).toMSecsSinceEpoch());
    }

    /// With custom functions: encode converts it to something that fits into a variant, decode
    /// reads it from a variant.
    template <typename Owner, typename T, typename Encode, typename Decode>
    void value(const QString &key, T Owner::*member, Encode encode, Decode /*decode*/)
    {
        insertChanged(key, member, encode);
    }

    /// A nested record; decode reads it from a variant hash.
    template <typename Owner, typename T, typename Decode>
    void record(const QString &key, T Owner::*member, Decode /*decode*/)
    {
        insertChanged(key, member, [](const T &value) { return hashOf(value); });
    }

    template <typename Owner, typename T, typename Decode>
    void recordIfPresent(const QString &key, T Owner::*member, Decode decode)
    {
        record(key, member, decode);
    }

    /// A nested record.
    template <typename T> static QVariantHash hashOf(const T &value)
    {
        if constexpr (requires { value.toVariantHash(); })
            return value.toVariantHash();
        else
            return toVariantHash(value);
    }
    static QVariantHash hashOf(const AbstractError &error)
    {
        return toContainer<QVariantHash>(error);
    }

private:
    template <typename Owner, typename T, typename Encode>
    void insertChanged(const QString &key, T Owner::*member, Encode encode)
    {
        const T &value = m_record.*member;
        if (!m_written || !(value == m_written->*member))
            m_hash.insert(key, QVariant(encode(value)));
    }

    const Record &m_record;
    QVariantHash &m_hash;
    const Record *const m_written;
};
