#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QList>
#include <QNetworkCookie>
#include <QString>
#include <QUrl>
#include <QVariantHash>

class RecordsStreamContext;

/// Where to fetch a download from, and with what.
struct AbstractDownloadSourceInfo {
    QUrl url;
    QString referer;
    QList<QNetworkCookie> cookies;
    /// The body of a POST; a GET if empty.
    QByteArray postData;
    /// The page on which the download was found.
    QUrl webPageUrl;
    /// What the engine module knows besides.
    QVariantHash customData;
    /// Bits of AbstractDownloadSourceFlag.
    quint32 flags = 0;

    bool operator==(const AbstractDownloadSourceInfo &) const = default;
};

/// Cookies travel in their full raw form, one a line. A cookie without a name has no such form and
/// is left out; a line feed within a cookie begins another one for the decoder.
QVariantHash toVariantHash(const AbstractDownloadSourceInfo &source);
/// The bytes of that hash, see StreamFieldsWriter.
QByteArrayView toStream(RecordsStreamContext &context, const AbstractDownloadSourceInfo &source);
AbstractDownloadSourceInfo toDownloadSourceInfo(const QVariantHash &hash);
