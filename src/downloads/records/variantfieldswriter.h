#pragma once

#include "abstracterror.h"
#include "variantvalues.h"

#include <QDateTime>
#include <QString>
#include <QVariant>
#include <QVariantHash>

#include <type_traits>
#include <utility>

/**
 * Encodes a record into a variant hash, field by field. VariantFieldsReader has the same functions
 * and decodes, so that a record names its fields once, in one function that takes either:
 *
 *     template <typename Fields> void describe(Fields &fields, auto &destination)
 *     {
 *         fields.value(u"type"_qs, destination.type);
 *         …
 */
class VariantFieldsWriter {
public:
    VariantFieldsWriter() = default;
    /// Adds to a hash that holds other fields of the record already.
    explicit VariantFieldsWriter(QVariantHash hash) : m_hash(std::move(hash)) { }

    QVariantHash takeHash() { return std::exchange(m_hash, {}); }

    template <typename T> void value(const QString &key, const T &value)
    {
        m_hash.insert(key, toVariantValue(value));
    }

    /// Keeps the record's default when the key is missing.
    template <typename T> void valueIfPresent(const QString &key, const T &value)
    {
        m_hash.insert(key, toVariantValue(value));
    }

    /// Is the fallback when the key is missing or its value no number.
    template <typename T>
    void numberOr(const QString &key, const T &value, std::type_identity_t<T> /*fallback*/)
    {
        m_hash.insert(key, toVariantValue(value));
    }

    /// Is not written when it is 0.
    template <typename T> void valueUnlessZero(const QString &key, const T &value)
    {
        if (value != 0)
            m_hash.insert(key, toVariantValue(value));
    }

    /// In milliseconds since the epoch; not written when it is invalid.
    void millisecondsIfValid(const QString &key, const QDateTime &time)
    {
        if (time.isValid())
            m_hash.insert(key, time.toMSecsSinceEpoch());
    }

    /// Of a form of its own: encode makes it something that fits into a variant, decode reads it
    /// from a variant.
    template <typename T, typename Encode, typename Decode>
    void value(const QString &key, const T &value, Encode encode, Decode /*decode*/)
    {
        m_hash.insert(key, QVariant(encode(value)));
    }

    /// A nested record; decode reads it from a variant hash.
    template <typename T, typename Decode>
    void record(const QString &key, const T &value, Decode /*decode*/)
    {
        m_hash.insert(key, encodedRecord(value));
    }

    template <typename T, typename Decode>
    void recordIfPresent(const QString &key, const T &value, Decode /*decode*/)
    {
        m_hash.insert(key, encodedRecord(value));
    }

private:
    /// Most nested records of a download say nothing. They share one encoded form, since a hash of
    /// its own costs a few KiB however small it is.
    template <typename T> static QVariantHash encodedRecord(const T &value)
    {
        static const T nothing{};
        static const QVariantHash encodedNothing = encodedAnew(nothing);
        return value == nothing ? encodedNothing : encodedAnew(value);
    }

    template <typename T> static QVariantHash encodedAnew(const T &value)
    {
        if constexpr (requires { value.toVariantHash(); })
            return value.toVariantHash();
        else
            return toVariantHash(value);
    }
    static QVariantHash encodedAnew(const AbstractError &error)
    {
        return toContainer<QVariantHash>(error);
    }

    QVariantHash m_hash;
};
