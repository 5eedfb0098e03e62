#pragma once

#include "variantfieldsreader.h"
#include "variantfieldswriter.h"

#include <QVariantHash>

/**
 * Converts a record to a variant hash and back. The record's fields are listed once, in a function
 * object that takes a writer or a reader of fields:
 *
 *     constexpr auto destinationFields = [](auto &fields) {
 *         fields.value(u"type"_qs, &AbstractDownloadDestination::type);
 *         …
 *     };
 */
template <typename Record, typename Fields>
QVariantHash encodedRecord(const Record &record, Fields describeFields)
{
    // Most members of most records have their defaults. Starting from a copy of the default hash
    // saves hashing their keys, and all records with only defaults share one hash.
    static const QVariantHash encodedNothing = [&describeFields] {
        QVariantHash hash;
        VariantFieldsWriter<Record> writer(defaultRecord<Record>(), hash, nullptr);
        describeFields(writer);
        return hash;
    }();
    QVariantHash hash = encodedNothing;
    VariantFieldsWriter<Record> writer(record, hash, &defaultRecord<Record>());
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
