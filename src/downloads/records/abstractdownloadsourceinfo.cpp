#include "abstractdownloadsourceinfo.h"

#include "streamfieldswriter.h"
#include "variantrecordcodec.h"

namespace {

QByteArray toRawForms(const QList<QNetworkCookie> &cookies)
{
    QByteArrayList forms;
    forms.reserve(cookies.size());
    for (const QNetworkCookie &cookie : cookies)
        forms.append(cookie.toRawForm(QNetworkCookie::Full));
    return forms.join('\n');
}

constexpr auto sourceFields = [](auto &fields) {
    using Source = AbstractDownloadSourceInfo;
    fields.value(u"url"_qs, &Source::url);
    fields.value(u"referer"_qs, &Source::referer);
    fields.value(u"cookies"_qs, &Source::cookies, toRawForms, [](const QVariant &variant) {
        return QNetworkCookie::parseCookies(variant.toByteArray());
    });
    fields.value(u"postData"_qs, &Source::postData);
    fields.value(u"webPageUrl"_qs, &Source::webPageUrl);
    fields.value(u"customData"_qs, &Source::customData);
    fields.value(u"flags"_qs, &Source::flags);
};

} // namespace

QVariantHash toVariantHash(const AbstractDownloadSourceInfo &source)
{
    return encodedRecord(source, sourceFields);
}

QByteArrayView toStream(RecordsStreamContext &context, const AbstractDownloadSourceInfo &source)
{
    return streamedRecord(context, source, sourceFields);
}

AbstractDownloadSourceInfo toDownloadSourceInfo(const QVariantHash &hash)
{
    return decodedRecord<AbstractDownloadSourceInfo>(hash, sourceFields);
}
