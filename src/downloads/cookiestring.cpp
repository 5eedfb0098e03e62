#include "cookiestring.h"

#include <QByteArray>
#include <QStringDecoder>
#include <QStringTokenizer>

namespace {

/// QString::fromUtf8() would drop a byte order mark; within a cookie it is an ordinary character.
QString textOf(const QByteArray &bytes)
{
    QStringDecoder decoder(QStringDecoder::Utf8,
                           QStringDecoder::Flag::Stateless
                               | QStringDecoder::Flag::ConvertInitialBom);
    return decoder(bytes);
}

} // namespace

QString cookiesToString(const QList<QNetworkCookie> &cookies, QChar separator)
{
    QString text;
    for (const QNetworkCookie &cookie : cookies) {
        if (&cookie != &cookies.first())
            text += separator;
        text += textOf(cookie.name());
        text += u'=';
        text += textOf(cookie.value());
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
