#include "abstractdownloadsourceinfo.h"

#include "variantfieldsreader.h"
#include "variantfieldswriter.h"

namespace {

QByteArray toRawForms(const QList<QNetworkCookie> &cookies)
{
    QByteArrayList forms;
    forms.reserve(cookies.size());
    for (const QNetworkCookie &cookie : cookies)
        forms.append(cookie.toRawForm(QNetworkCookie::Full));
    return forms.join('\n');
}

template <typename Fields> void describe(Fields &fields, auto &source)
{
    fields.value(u"url"_qs, source.url);
    fields.value(u"referer"_qs, source.referer);
    fields.value(u"cookies"_qs, source.cookies, toRawForms, [](const QVariant &variant) {
        return QNetworkCookie::parseCookies(variant.toByteArray());
    });
    fields.value(u"postData"_qs, source.postData);
    fields.value(u"webPageUrl"_qs, source.webPageUrl);
    fields.value(u"customData"_qs, source.customData);
    fields.value(u"flags"_qs, source.flags);
}

} // namespace

QVariantHash toVariantHash(const AbstractDownloadSourceInfo &source)
{
    VariantFieldsWriter fields;
    describe(fields, source);
    return fields.takeHash();
}

AbstractDownloadSourceInfo toDownloadSourceInfo(const QVariantHash &hash)
{
    AbstractDownloadSourceInfo source;
    VariantFieldsReader fields(hash);
    describe(fields, source);
    return source;
}
