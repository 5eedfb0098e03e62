#include "downloaderrorallowedtoautoretry.h"

#include "variantfieldsreader.h"
#include "variantfieldswriter.h"

namespace {

template <typename Fields> void describe(Fields &fields, auto &error)
{
    fields.value(u"category"_qs, error.category);
    fields.value(u"code"_qs, error.code);
}

} // namespace

QVariant toVariant(const DownloadErrorAllowedToAutoRetry &error)
{
    VariantFieldsWriter fields;
    describe(fields, error);
    return fields.takeHash();
}

DownloadErrorAllowedToAutoRetry toDownloadErrorAllowedToAutoRetry(const QVariant &variant)
{
    DownloadErrorAllowedToAutoRetry error;
    const QVariantHash hash = variant.toHash();
    VariantFieldsReader fields(hash);
    describe(fields, error);
    return error;
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
