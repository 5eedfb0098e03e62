#pragma once

#include "variantfieldsreader.h"
#include "variantfieldswriter.h"

#include <QVariantHash>

/**
 * A record as a variant hash and back. The record's fields are told once, by a function object that
 * takes either a writer or a reader of fields:
 *
 *     constexpr auto destinationFields = [](auto &fields) {
 *         fields.value(u"type"_qs, &AbstractDownloadDestination::type);
 *         …
 *     };
 */
template <typename Record, typename Fields>
QVariantHash encodedRecord(const Record &record, Fields describeFields)
{
    // Most members of most records have their defaults. Copying those along with the whole hash
    // saves hashing their keys, and a record that says nothing shares its hash with all such.
    static const Record nothing{};
    static const QVariantHash encodedNothing = [&describeFields] {
        QVariantHash hash;
        VariantFieldsWriter<Record> writer(nothing, hash, nullptr);
        describeFields(writer);
        return hash;
    }();
    QVariantHash hash = encodedNothing;
    VariantFieldsWriter<Record> writer(record, hash, &nothing);
    describeFields(writer);
    return hash;
}

template <typename Record, typename Fields>
Record decodedRecord(const QVariantHash &hash, Fields describeFields)
{
    Record record;
    VariantFieldsReader<Record> reader(hash, record);
    describeFields(reader);
    return record;
}
