#pragma once

#include "qtclock.h"
#include "vhipcqueuedpart.h"

#include <QSharedPointer>
#include <QString>

class RemoteJsonRequestsManager;

/**
 * The part "jsonRequests" of the link: sends and receives a manager's JSON texts, at either end.
 *
 * Texts that are sent while the link is down are queued, and sent once, in order, when it comes up.
 * If it does not come up within 30 seconds after the last of them, all are reported as failed.
 * Texts that were written to the link are not tracked.
 */
class VhIpcJsonRequests : public VhIpcQueuedPart {
    Q_OBJECT
public:
    explicit VhIpcJsonRequests(const QSharedPointer<RemoteJsonRequestsManager> &manager,
                               QObject *parent = nullptr, QtClock &clock = QtClock::system());

    /// The name under which messages are dispatched to this part.
    static QString partName();

    void processVh(const QHash<QString, QVariant> &map) override;

public Q_SLOTS:
    /// Any thread.
    void send(qint64 id, const QString &json, bool isRequest);

Q_SIGNALS:
    void received(qint64 id, const QString &json, bool isRequest);
    void sendFailed(qint64 id, const QString &json, bool isRequest);

private:
    void onExpired(const QHash<QString, QVariant> &message) override;

    const QSharedPointer<RemoteJsonRequestsManager> m_manager;
};
