#pragma once

#include <QList>
#include <QNetworkCookie>
#include <QString>

/// "name=value" of each cookie in order, with only the separator between them.
QString cookiesToString(const QList<QNetworkCookie> &cookies, QChar separator);

/// The reverse, for the value of a Cookie header (separator ';'). Names and values are kept
/// verbatim, except for the white space around them; a part without "=" is skipped.
QList<QNetworkCookie> cookiesFromString(const QString &text, QChar separator);
