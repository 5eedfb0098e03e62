#include "kovmisctaskspart.h"

#include "qtappdefaultlogger.h"
#include "vhipckeys.h"

#include <QVariant>

void KovMiscTasksPart::processVh(const QHash<QString, QVariant> &map)
{
    if (map.value(VhIpcKeys::reason()).toString() == u"activateMainWindow")
        logLine(1, QStringLiteral("[KovMiscTasksPart]: asked to activate the main window"));
}
