#pragma once

#include "qtabstractremoteclienthelper.h"

class QtAbstractSocketVhIpc;

/// Launches the server only while the processor of a link has work that requires it.
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
