#pragma once

#include "qtabstractremoteclienthelper.h"

class QtAbstractSocketVhIpc;

/// Enables launching only while the processor of a link has work that requires the server.
class QtAbstractVhIpcClientHelper : public QtAbstractRemoteClientHelper {
    Q_OBJECT
public:
    QtAbstractVhIpcClientHelper(QSharedPointer<QtAbstractSocket> socket,
                                QSharedPointer<QtSocketConnectionKeeper> keeper,
                                const QSharedPointer<QtAbstractServerLauncher> &launcher,
                                QSharedPointer<QtAbstractSocketVhIpc> vhIpc,
                                QObject *parent = nullptr, QtClock &clock = QtClock::system());

private:
    const QSharedPointer<QtAbstractSocketVhIpc> m_vhIpc;
};
