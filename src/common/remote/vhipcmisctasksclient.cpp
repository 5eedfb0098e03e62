#include "vhipcmisctasksclient.h"

#include "vhipckeys.h"

#include <QVariant>

VhIpcMiscTasksClient::VhIpcMiscTasksClient(QObject *parent) : QtAbstractVhIpcPart(parent) { }

QString VhIpcMiscTasksClient::partName() { return QStringLiteral("miscTasks"); }

void VhIpcMiscTasksClient::activateMainWindow()
{
    Q_EMIT sendVh({{VhIpcKeys::name(), partName()},
                   {VhIpcKeys::reason(), QStringLiteral("activateMainWindow")}});
}

void VhIpcMiscTasksClient::processVh(const QHash<QString, QVariant> &) { }
