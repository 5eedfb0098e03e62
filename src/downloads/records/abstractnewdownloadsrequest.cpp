#include "abstractnewdownloadsrequest.h"

#include "variantfieldsreader.h"
#include "variantfieldswriter.h"

#include <QByteArray>

namespace {

QVariantList encodeDownloads(const QList<AbstractNewDownloadRequest> &downloads)
{
    return toVariantListWith(downloads, [](const auto &one) { return toVariantHash(one); });
}

QList<AbstractNewDownloadRequest> decodeDownloads(const QVariant &variant)
{
    return fromVariantHashesWith<AbstractNewDownloadRequest>(variant.toList(),
                                                             toNewDownloadRequest);
}

QByteArray toBytes(const QBitArray &bits)
{
    QByteArray bytes(bits.size(), 0);
    for (qsizetype i = 0; i < bits.size(); ++i)
        bytes[i] = bits.testBit(i) ? 1 : 0;
    return bytes;
}

template <typename Fields> void describe(Fields &fields, auto &request)
{
    fields.value(u"downloads"_qs, request.downloads, encodeDownloads, decodeDownloads);
    fields.value(u"selectedDownloads"_qs, request.selectedDownloads, toBytes, toBitArray);
    fields.value(u"flags"_qs, request.flags);
    fields.value(u"source"_qs, request.source);
    fields.value(u"preferredDownloadType"_qs, request.preferredDownloadType);
}

} // namespace

QVariantHash toVariantHash(const AbstractNewDownloadsRequest &request)
{
    VariantFieldsWriter fields;
    describe(fields, request);
    return fields.takeHash();
}

AbstractNewDownloadsRequest toNewDownloadsRequest(const QVariantHash &hash)
{
    AbstractNewDownloadsRequest request;
    VariantFieldsReader fields(hash);
    describe(fields, request);
    const qsizetype known = request.selectedDownloads.size();
    const qsizetype count = request.downloads.size();
    if (count > known) {
        request.selectedDownloads.resize(count);
        request.selectedDownloads.fill(true, known, count);
    }
    return request;
}

QBitArray toBitArray(const QVariant &variant)
{
    if (variant.typeId() == QMetaType::QBitArray)
        return variant.toBitArray();
    if (variant.typeId() != QMetaType::QByteArray)
        return {};
    const QByteArray bytes = variant.toByteArray();
    QBitArray bits(bytes.size());
    for (qsizetype i = 0; i < bytes.size(); ++i)
        bits.setBit(i, bytes[i] != 0);
    return bits;
}
