#include "vhipcjsonrequests.h"

#include "remotejsonrequestsmanager.h"
#include "vhipckeys.h"

#include <QMetaObject>
#include <QThread>
#include <QVariant>

#include <utility>

namespace {

constexpr int waitForConnectionMs = 30'000;

QString jsonKey() { return QStringLiteral("json"); }
QString requestReason() { return QStringLiteral("request"); }
QString responseReason() { return QStringLiteral("response"); }

} // namespace

VhIpcJsonRequests::VhIpcJsonRequests(const QSharedPointer<RemoteJsonRequestsManager> &manager,
                                     QObject *parent, QtClock &clock)
    : QtAbstractVhIpcPart(parent), m_manager(manager), m_waitingConnectedTimer(clock.createTimer())
{
    connect(m_manager.data(), &RemoteJsonRequestsManager::sendRequested, this,
            &VhIpcJsonRequests::send);
    connect(this, &VhIpcJsonRequests::received, m_manager.data(),
            &RemoteJsonRequestsManager::received);
    connect(this, &VhIpcJsonRequests::sendFailed, m_manager.data(),
            &RemoteJsonRequestsManager::sendFailed);
    connect(m_waitingConnectedTimer.get(), &QtSingleShotTimer::timeout, this,
            &VhIpcJsonRequests::onWaitingConnectedTimedOut);
}

QString VhIpcJsonRequests::partName() { return QStringLiteral("jsonRequests"); }

void VhIpcJsonRequests::send(qint64 id, const QString &json, bool isRequest)
{
    if (QThread::currentThread() != thread()) {
        QMetaObject::invokeMethod(
            this, [this, id, json, isRequest] { send(id, json, isRequest); }, Qt::QueuedConnection);
        return;
    }
    if (!isConnected()) {
        m_queue.append({id, json, isRequest});
        m_waitingConnectedTimer->start(waitForConnectionMs);
        setRequiringServer(true);
        return;
    }
    Q_EMIT sendVh({{VhIpcKeys::name(), partName()},
                   {VhIpcKeys::reason(), isRequest ? requestReason() : responseReason()},
                   {VhIpcKeys::id(), id},
                   {jsonKey(), json}});
}

void VhIpcJsonRequests::onConnectChanged(bool connected)
{
    QtAbstractVhIpcPart::onConnectChanged(connected);
    if (!connected)
        return;
    m_waitingConnectedTimer->stop();
    const QList<SendRecord> queue = std::exchange(m_queue, {});
    setRequiringServer(false);
    for (const SendRecord &record : queue)
        send(record.id, record.json, record.isRequest);
}

void VhIpcJsonRequests::onWaitingConnectedTimedOut()
{
    // Reentrancy: a slot may send again, which starts a new wait.
    const QList<SendRecord> queue = std::exchange(m_queue, {});
    setRequiringServer(false);
    for (const SendRecord &record : queue)
        Q_EMIT sendFailed(record.id, record.json, record.isRequest);
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
