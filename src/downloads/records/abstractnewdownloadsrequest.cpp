#include "abstractnewdownloadsrequest.h"

#include "abstractnewdownloadsrequestjob.h"
#include "variantrecordcodec.h"

#include <QByteArray>

#include <algorithm>
#include <utility>

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

QString downloadsKey() { return QStringLiteral("downloads"); }

constexpr auto requestFields = [](auto &fields) {
    using Request = AbstractNewDownloadsRequest;
    fields.value(downloadsKey(), &Request::downloads, encodeDownloads, decodeDownloads);
    fields.value(u"selectedDownloads"_qs, &Request::selectedDownloads, toBytes, toBitArray);
    fields.value(u"flags"_qs, &Request::flags);
    fields.value(u"source"_qs, &Request::source);
    fields.value(u"preferredDownloadType"_qs, &Request::preferredDownloadType);
};

} // namespace

QVariantHash toVariantHash(const AbstractNewDownloadsRequest &request)
{
    return encodedRecord(request, requestFields);
}

QVariantHash toVariantHash(const AbstractNewDownloadsRequestJob &job)
{
    QVariantHash hash = toVariantHash(job.request);
    if (!job.encodedDownloads.isEmpty())
        hash.insert(downloadsKey(), QVariant::fromValue(job.encodedDownloads));
    return hash;
}

QVariantHash toEncodedVariantHash(const AbstractNewDownloadsRequestJob &job)
{
    if (job.request.downloads.isEmpty())
        return toVariantHash(job);
    AbstractNewDownloadsRequestJob encoded = job;
    NewDownloadsEncoder encoder;
    for (const auto &download : std::exchange(encoded.request.downloads, {}))
        encoder.add(download);
    encoded.encodedDownloads = encoder.downloads();
    return toVariantHash(encoded);
}

AbstractNewDownloadsRequest toNewDownloadsRequest(const QVariantHash &hash)
{
    auto request = decodedRecord<AbstractNewDownloadsRequest>(hash, requestFields);
    QBitArray &selected = request.selectedDownloads;
    const qsizetype known = selected.size();
    selected.resize(std::max(known, request.downloads.size()));
    selected.fill(true, known, selected.size());
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
