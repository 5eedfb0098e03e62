#include "currentuserservername.h"

#include <QStringView>

#include <unistd.h>

QString currentUserServerName(const QString &base)
{
    QString userId = QString::number(::getuid());
    // Characters that are not allowed in file names on some platform.
    static constexpr QStringView forbidden = u"/?<>\\:*|\"\n";
    userId.removeIf([](QChar character) { return forbidden.contains(character); });
    return base + userId;
}
