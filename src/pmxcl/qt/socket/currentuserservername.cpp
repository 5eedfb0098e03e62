#include "currentuserservername.h"

#include <QRegularExpression>

#include <unistd.h>

QString currentUserServerName(const QString &base)
{
    QString userId = QString::number(::getuid());
    if (!userId.isEmpty()) {
        // What must not stand in a file name on any platform.
        static const QRegularExpression forbidden(QStringLiteral("([/?<>\\\\:*|\"\n]+)"));
        userId.replace(forbidden, QString());
    }
    return base + userId;
}
