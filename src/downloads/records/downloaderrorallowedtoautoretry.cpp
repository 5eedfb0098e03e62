#include "downloaderrorallowedtoautoretry.h"

#include "variantrecordcodec.h"

namespace {

constexpr auto retryErrorFields = [](auto &fields) {
    fields.value(u"category"_qs, &DownloadErrorAllowedToAutoRetry::category);
    fields.value(u"code"_qs, &DownloadErrorAllowedToAutoRetry::code);
};

} // namespace

QVariant toVariant(const DownloadErrorAllowedToAutoRetry &error)
{
    return encodedRecord(error, retryErrorFields);
}

DownloadErrorAllowedToAutoRetry toDownloadErrorAllowedToAutoRetry(const QVariant &variant)
{
    return decodedRecord<DownloadErrorAllowedToAutoRetry>(variant.toHash(), retryErrorFields);
}

QVariant toVariant(const QSet<DownloadErrorAllowedToAutoRetry> &errors)
{
    return toVariantListWith(errors, [](const auto &error) { return toVariant(error); });
}

QSet<DownloadErrorAllowedToAutoRetry> toDownloadsErrorsAllowedToAutoRetry(const QVariant &variant)
{
    QSet<DownloadErrorAllowedToAutoRetry> errors;
    const QVariantList list = variant.toList();
    for (const QVariant &error : list)
        errors.insert(toDownloadErrorAllowedToAutoRetry(error));
    return errors;
}

size_t qHash(const DownloadErrorAllowedToAutoRetry &error, size_t seed)
{
    return qHashMulti(seed, error.category, error.code);
}
