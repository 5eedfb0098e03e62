#include "abstractdownloadsourceinfo.h"

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
    fields.value(u"url"_qs, &AbstractDownloadSourceInfo::url);
    fields.value(u"referer"_qs, &AbstractDownloadSourceInfo::referer);
    fields.value(u"cookies"_qs, &AbstractDownloadSourceInfo::cookies, toRawForms,
                 [](const QVariant &variant) {
                     return QNetworkCookie::parseCookies(variant.toByteArray());
                 });
    fields.value(u"postData"_qs, &AbstractDownloadSourceInfo::postData);
    fields.value(u"webPageUrl"_qs, &AbstractDownloadSourceInfo::webPageUrl);
    fields.value(u"customData"_qs, &AbstractDownloadSourceInfo::customData);
    fields.value(u"flags"_qs, &AbstractDownloadSourceInfo::flags);
};

} // namespace

QVariantHash toVariantHash(const AbstractDownloadSourceInfo &source)
{
    return encodedRecord(source, sourceFields);
}

AbstractDownloadSourceInfo toDownloadSourceInfo(const QVariantHash &hash)
{
    return decodedRecord<AbstractDownloadSourceInfo>(hash, sourceFields);
}
