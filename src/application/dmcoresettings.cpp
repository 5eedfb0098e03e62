#include "dmcoresettings.h"

#include <QMetaEnum>

QString toString(DmCoreSettings::Setting setting)
{
    return QString::fromLatin1(QMetaEnum::fromType<DmCoreSettings::Setting>().valueToKey(setting));
}
