#pragma once

#include "qtclock.h"
#include "vhipcqueuedpart.h"

#include <QSharedPointer>
#include <QString>

class RemoteJsonRequestsManager;

/**
 * The part "jsonRequests" of the link: carries a manager's JSON texts, for either end.
 *
 * Texts that are sent while the link is down wait for it, in order, and are sent once when it comes
 * up. When it has not come up 30 seconds after the last of them, all are told as failed. Texts that
 * were given to the link are not followed up.
 */
class VhIpcJsonRequests : public VhIpcQueuedPart {
    Q_OBJECT
public:
    explicit VhIpcJsonRequests(const QSharedPointer<RemoteJsonRequestsManager> &manager,
                               QObject *parent = nullptr, QtClock &clock = QtClock::system());

    /// The name that routes messages to this part.
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
