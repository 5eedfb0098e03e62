#include "remotejsonrequestsmanager.h"

#include "uniqueint64idgen.h"

#include <utility>

RemoteJsonRequestsManager::RemoteJsonRequestsManager(QSharedPointer<UniqueInt64IdGen> idGen,
                                                     QObject *parent)
    : AbstractJsonRequestsManager(parent), m_idGen(std::move(idGen))
{
}

qint64 RemoteJsonRequestsManager::nextId() { return m_idGen->nextId(); }

void RemoteJsonRequestsManager::send(qint64 id, const QString &json, bool isRequest)
{
    Q_EMIT sendRequested(id, json, isRequest);
}
