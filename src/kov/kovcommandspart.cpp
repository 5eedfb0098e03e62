#include "kovcommandspart.h"

#include "kovcommandmessages.h"
#include "kovcommands.h"
#include "vhipckeys.h"

#include <QVariant>

#include <utility>

KovCommandsPart::KovCommandsPart(QSharedPointer<KovCommands> commands, QObject *parent)
    : QtAbstractVhIpcPart(parent), m_commands(std::move(commands))
{
}

void KovCommandsPart::processVh(const QHash<QString, QVariant> &map)
{
    if (map.value(VhIpcKeys::reason()).toString() != KovCommandMessages::runReason())
        return;
    const KovCommandResult result =
        m_commands->run(map.value(KovCommandMessages::arguments()).toStringList());
    Q_EMIT sendVh({{VhIpcKeys::name(), KovCommandMessages::partName()},
                   {VhIpcKeys::reason(), KovCommandMessages::doneReason()},
                   {KovCommandMessages::exitCode(), result.exitCode},
                   {KovCommandMessages::output(), result.output}});
}
