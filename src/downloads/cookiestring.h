#pragma once

#include <QList>
#include <QNetworkCookie>
#include <QString>

/// "name=value" of each cookie in order, separated by the separator alone.
QString cookiesToString(const QList<QNetworkCookie> &cookies, QChar separator);

/// The reverse, for what a browser sends in a Cookie header (separator ';'). Names and values are
/// taken as they are, without the white space around each part; a part without "=" is skipped.
QList<QNetworkCookie> cookiesFromString(const QString &text, QChar separator);
