#include "appsettings.h"

#include <QMetaEnum>

QString toString(AppSettings::Setting setting)
{
    return QString::fromLatin1(QMetaEnum::fromType<AppSettings::Setting>().valueToKey(setting));
}
