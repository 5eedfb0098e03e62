#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QList>
#include <QNetworkCookie>
#include <QString>
#include <QUrl>
#include <QVariantHash>

class RecordsStreamContext;

/// The source of a download: its URL, and what to send with the request.
struct AbstractDownloadSourceInfo {
    QUrl url;
    QString referer;
    QList<QNetworkCookie> cookies;
    /// The body of a POST; a GET if empty.
    QByteArray postData;
    /// The page on which the download was found.
    QUrl webPageUrl;
    /// Further values of the engine module.
    QVariantHash customData;
    /// Bits of AbstractDownloadSourceFlag.
    quint32 flags = 0;

    bool operator==(const AbstractDownloadSourceInfo &) const = default;
};

/// Cookies are encoded in their full raw form, one per line. A cookie without a name has no raw
/// form and is left out; a line feed within a cookie starts another one for the decoder.
QVariantHash toVariantHash(const AbstractDownloadSourceInfo &source);
/// The bytes of that hash, see StreamFieldsWriter.
QByteArrayView toStream(RecordsStreamContext &context, const AbstractDownloadSourceInfo &source);
AbstractDownloadSourceInfo toDownloadSourceInfo(const QVariantHash &hash);
