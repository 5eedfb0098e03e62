#include "kovjsonecho.h"

#include <QJsonDocument>
#include <QJsonObject>

QString kovJsonEcho(const QString &request)
{
    const QJsonObject echo{{QStringLiteral("from"), QStringLiteral("kov")},
                           {QStringLiteral("kind"), QStringLiteral("echo")},
                           {QStringLiteral("request"), request}};
    return QString::fromUtf8(QJsonDocument(echo).toJson(QJsonDocument::Compact));
}
