#include "vhipcjsonrequests.h"

#include "remotejsonrequestsmanager.h"
#include "vhipckeys.h"

#include <QMetaObject>
#include <QThread>
#include <QVariant>

namespace {

QString jsonKey() { return QStringLiteral("json"); }
QString requestReason() { return QStringLiteral("request"); }
QString responseReason() { return QStringLiteral("response"); }

} // namespace

VhIpcJsonRequests::VhIpcJsonRequests(const QSharedPointer<RemoteJsonRequestsManager> &manager,
                                     QObject *parent, QtClock &clock)
    : VhIpcQueuedPart(noLimitMs, parent, clock), m_manager(manager)
{
    connect(m_manager.data(), &RemoteJsonRequestsManager::sendRequested, this,
            &VhIpcJsonRequests::send);
    connect(this, &VhIpcJsonRequests::received, m_manager.data(),
            &RemoteJsonRequestsManager::received);
    connect(this, &VhIpcJsonRequests::sendFailed, m_manager.data(),
            &RemoteJsonRequestsManager::sendFailed);
}

QString VhIpcJsonRequests::partName() { return QStringLiteral("jsonRequests"); }

void VhIpcJsonRequests::send(qint64 id, const QString &json, bool isRequest)
{
    if (QThread::currentThread() != thread()) {
        QMetaObject::invokeMethod(
            this, [this, id, json, isRequest] { send(id, json, isRequest); }, Qt::QueuedConnection);
        return;
    }
    sendOrQueue({.message = {{VhIpcKeys::name(), partName()},
                             {VhIpcKeys::reason(), isRequest ? requestReason() : responseReason()},
                             {VhIpcKeys::id(), id},
                             {jsonKey(), json}}});
}

void VhIpcJsonRequests::onExpired(const QHash<QString, QVariant> &message)
{
    Q_EMIT sendFailed(message.value(VhIpcKeys::id()).toLongLong(),
                      message.value(jsonKey()).toString(),
                      message.value(VhIpcKeys::reason()).toString() == requestReason());
}

void VhIpcJsonRequests::processVh(const QHash<QString, QVariant> &map)
{
    const QString reason = map.value(VhIpcKeys::reason()).toString();
    const bool isRequest = reason == requestReason();
    if (!isRequest && reason != responseReason())
        return;
    Q_EMIT received(map.value(VhIpcKeys::id()).toLongLong(), map.value(jsonKey()).toString(),
                    isRequest);
}
