#pragma once

#include "qtvariantstreamwriter.h"
#include "variantfieldswriter.h"

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QNetworkCookie>
#include <QString>
#include <QVariant>
#include <QVariantHash>
#include <QtEndian>

#include <memory>
#include <type_traits>
#include <unordered_map>
#include <utility>
#include <vector>

/// The state that is kept from one record to the next while many are encoded. Not thread-safe.
class RecordsStreamContext {
public:
    /// The single object of each type; initially a copy of the argument.
    template <typename T> T &of(const T &prototype)
    {
        static const char key = 0;
        std::shared_ptr<void> &held = m_objects[&key];
        if (!held)
            held = std::make_shared<T>(prototype);
        return *static_cast<T *>(held.get());
    }

private:
    std::unordered_map<const char *, std::shared_ptr<void>> m_objects;
};

namespace StreamFields {

/// Whether two values have the same encoding on the link. Equal values may have several encodings.
template <typename T> bool isSame(const T &a, const T &b) { return a == b; }
inline bool isSame(const QVariantHash &a, const QVariantHash &b)
{
    return a.isSharedWith(b) || (a.isEmpty() && b.isEmpty());
}
inline bool isSame(const QDateTime &a, const QDateTime &b)
{
    return a == b && a.timeSpec() == b.timeSpec() && a.offsetFromUtc() == b.offsetFromUtc();
}
/// Of records, which may hold any of these.
template <typename T>
requires(std::is_class_v<T> && !PlainVariantValue<T>) bool isSame(const QList<T> &a,
                                                                  const QList<T> &b)
{
    return a.constData() == b.constData() || (a.isEmpty() && b.isEmpty());
}
inline bool isSame(const QList<QNetworkCookie> &a, const QList<QNetworkCookie> &b)
{
    return a == b;
}

} // namespace StreamFields

/**
 * Encodes records of one type, one after another, directly into the bytes of a variant hash: field
 * by field, as VariantFieldsWriter builds the hash. Fields that are equal to the previous record's
 * are copied from its bytes.
 *
 * A nested record, or a list of them, is encoded in the same way if it has a function
 * QByteArrayView toStream(RecordsStreamContext &, const T &), otherwise through its hash.
 */
template <typename Record> class StreamFieldsWriter {
public:
    /// The entries with their count before them, without the head of a variant; valid until the
    /// next call.
    template <typename Fields>
    QByteArrayView write(RecordsStreamContext &context, const Record &record, Fields describeFields)
    {
        m_context = &context;
        m_record = &record;
        m_writer.clear();
        m_writer.writeCount(0);
        m_count = 0;
        m_index = 0;
        m_newEnds.clear();
        m_newEnds.reserve(m_previousEnds.size());
        describeFields(*this);
        copyPending();

        m_previous = record;
        m_previousEnds.swap(m_newEnds);
        m_writer.swap(m_previousBytes);
        qToBigEndian(m_count, m_previousBytes.data());
        return m_previousBytes;
    }

    template <typename Owner, typename T> void value(const QString &key, T Owner::*member)
    {
        field(key, member, [](const T &value) { return toVariantValue(value); });
    }
    template <typename Owner, typename T> void valueIfPresent(const QString &key, T Owner::*member)
    {
        value(key, member);
    }
    template <typename Owner, typename T>
    void numberOr(const QString &key, T Owner::*member, std::type_identity_t<T> /*fallback*/)
    {
        value(key, member);
    }
    template <typename Owner, typename T> void valueUnlessZero(const QString &key, T Owner::*member)
    {
        field(
            key, member, [](const T &value) { return toVariantValue(value); },
            m_record->*member != 0);
    }
    template <typename Owner> void millisecondsIfValid(const QString &key, QDateTime Owner::*member)
    {
        field(
            key, member, [](const QDateTime &value) { return value.toMSecsSinceEpoch(); },
            (m_record->*member).isValid());
    }
    template <typename Owner, typename T, typename Encode, typename Decode>
    void value(const QString &key, T Owner::*member, Encode encode, Decode /*decode*/)
    {
        if constexpr (requires(RecordsStreamContext & context, const T &list) {
                          toStream(context, list.constFirst());
                      })
            field(key, member, [this](const T &list) { writeRecords(list); });
        else
            field(key, member, encode);
    }
    template <typename Owner, typename T, typename Decode>
    void record(const QString &key, T Owner::*member, Decode /*decode*/)
    {
        const T &nested = m_record->*member;
        if constexpr (requires(RecordsStreamContext & context) { toStream(context, nested); }) {
            const QByteArrayView bytes = toStream(*m_context, nested);
            copyPending();
            m_writer.writeKey(key);
            m_writer.writeHashHead();
            m_writer.append(bytes);
            endField(true);
        } else {
            field(key, member,
                  [](const T &value) { return VariantFieldsWriter<Record>::hashOf(value); });
        }
    }
    template <typename Owner, typename T, typename Decode>
    void recordIfPresent(const QString &key, T Owner::*member, Decode decode)
    {
        record(key, member, decode);
    }

private:
    template <typename Owner, typename T, typename Encode>
    void field(const QString &key, T Owner::*member, Encode encode, bool isPresent = true)
    {
        const T &value = m_record->*member;
        if (m_index < m_previousEnds.size() && StreamFields::isSame(value, m_previous.*member)) {
            const qsizetype begin = beginOfPrevious();
            if (m_pendingSize == 0)
                m_pendingBegin = begin;
            m_pendingSize += m_previousEnds[m_index] - begin;
            endField(isPresent);
            return;
        }
        copyPending();
        if (isPresent) {
            // As in the hash, a value equal to the default is encoded like the default: an empty
            // text need not be null.
            const T &usual = defaultRecord<Record>().*member;
            m_writer.writeKey(key);
            if constexpr (std::is_void_v<decltype(encode(value))>)
                encode(value);
            else
                m_writer.writeVariant(QVariant(encode(value == usual ? usual : value)));
        }
        endField(isPresent);
    }

    template <typename T> void writeRecords(const QList<T> &records)
    {
        m_writer.writeListHead();
        m_writer.writeCount(static_cast<quint32>(records.size()));
        for (const T &record : records) {
            const QByteArrayView bytes = toStream(*m_context, record);
            m_writer.writeHashHead();
            m_writer.append(bytes);
        }
    }

    void endField(bool isPresent)
    {
        m_newEnds.push_back(m_writer.bytes().size() + m_pendingSize);
        if (isPresent)
            ++m_count;
        ++m_index;
    }

    qsizetype beginOfPrevious() const
    {
        return m_index == 0 ? qsizetype(sizeof(m_count)) : m_previousEnds[m_index - 1];
    }

    /// Adjacent fields are copied at once.
    void copyPending()
    {
        if (m_pendingSize > 0)
            m_writer.append(QByteArrayView(m_previousBytes).sliced(m_pendingBegin, m_pendingSize));
        m_pendingSize = 0;
    }

    RecordsStreamContext *m_context = nullptr;
    const Record *m_record = nullptr;
    QtVariantStreamWriter m_writer;
    quint32 m_count = 0;
    size_t m_index = 0;

    Record m_previous;
    QByteArray m_previousBytes;
    /// The end of each of its fields.
    std::vector<qsizetype> m_previousEnds;
    std::vector<qsizetype> m_newEnds;
    /// The range of the previous bytes that is still to be copied.
    qsizetype m_pendingBegin = 0;
    qsizetype m_pendingSize = 0;
};

/// The record as the bytes of its variant hash: see variantrecordcodec.h for the fields.
template <typename Record, typename Fields>
QByteArrayView streamedRecord(RecordsStreamContext &context, const Record &record,
                              Fields describeFields)
{
    // Most members of most records have their defaults.
    static const auto afterNothing = [&describeFields] {
        RecordsStreamContext ownContext;
        StreamFieldsWriter<Record> writer;
        writer.write(ownContext, Record{}, describeFields);
        return writer;
    }();
    return context.of(afterNothing).write(context, record, describeFields);
}
