#pragma once

#include "abstractjsonrequestsmanager.h"

#include <QSharedPointer>

class UniqueInt64IdGen;

/// JSON requests over the link; VhIpcJsonRequests sends and receives them.
class RemoteJsonRequestsManager : public AbstractJsonRequestsManager {
    Q_OBJECT
public:
    explicit RemoteJsonRequestsManager(QSharedPointer<UniqueInt64IdGen> idGen,
                                       QObject *parent = nullptr);

    qint64 nextId() override;
    void send(qint64 id, const QString &json, bool isRequest) override;

Q_SIGNALS:
    void sendRequested(qint64 id, const QString &json, bool isRequest);

private:
    const QSharedPointer<UniqueInt64IdGen> m_idGen;
};
