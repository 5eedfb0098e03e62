#include "kovcommandclientpart.h"

#include "kovcommandmessages.h"
#include "vhipckeys.h"

#include <QVariant>

void KovCommandClientPart::sendCommand(const QStringList &arguments)
{
    Q_EMIT sendVh({{VhIpcKeys::name(), KovCommandMessages::partName()},
                   {VhIpcKeys::reason(), KovCommandMessages::runReason()},
                   {KovCommandMessages::arguments(), arguments}});
}

void KovCommandClientPart::processVh(const QHash<QString, QVariant> &map)
{
    if (map.value(VhIpcKeys::name()).toString() == KovCommandMessages::partName()
        && map.value(VhIpcKeys::reason()).toString() == KovCommandMessages::doneReason())
        Q_EMIT done(map.value(KovCommandMessages::exitCode()).toInt(),
                    map.value(KovCommandMessages::output()).toString());
}
