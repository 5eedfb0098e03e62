#pragma once

#include <QByteArray>
#include <QList>
#include <QNetworkCookie>
#include <QString>
#include <QUrl>

/// What is needed to perform one download.
struct KovDownloadRequest {
    QUrl url = {};
    /// The text as the browser gave it; may be empty, like all that follow.
    QString referrer = {};
    QString userAgent = {};
    /// For the URL's host, unless they name another domain.
    QList<QNetworkCookie> cookies = {};
    /// The body of a POST; with an empty one the download is a GET.
    QByteArray postData = {};
    QString suggestedName = {};
};
