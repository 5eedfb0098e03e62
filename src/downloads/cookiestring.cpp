#include "cookiestring.h"

#include <QStringTokenizer>

QString cookiesToString(const QList<QNetworkCookie> &cookies, QChar separator)
{
    QString text;
    for (const QNetworkCookie &cookie : cookies) {
        if (&cookie != &cookies.first())
            text += separator;
        text += QString::fromUtf8(cookie.name());
        text += u'=';
        text += QString::fromUtf8(cookie.value());
    }
    return text;
}

QList<QNetworkCookie> cookiesFromString(const QString &text, QChar separator)
{
    QList<QNetworkCookie> cookies;
    for (const QStringView part : QStringView(text).tokenize(separator, Qt::SkipEmptyParts)) {
        const QStringView trimmed = part.trimmed();
        const qsizetype equals = trimmed.indexOf(u'=');
        if (equals < 0)
            continue;
        cookies.emplace_back(trimmed.first(equals).toUtf8(), trimmed.sliced(equals + 1).toUtf8());
    }
    return cookies;
}
