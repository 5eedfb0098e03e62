#include "currentuserservername.h"

#include <QStringView>

#include <unistd.h>

QString currentUserServerName(const QString &base)
{
    QString userId = QString::number(::getuid());
    // What must not stand in a file name on any platform.
    static constexpr QStringView forbidden = u"/?<>\\:*|\"\n";
    userId.removeIf([](QChar character) { return forbidden.contains(character); });
    return base + userId;
}
