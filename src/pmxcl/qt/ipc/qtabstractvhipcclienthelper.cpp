#include "qtabstractvhipcclienthelper.h"

#include "qtabstractserverlauncher.h"
#include "qtabstractsocket.h"
#include "qtabstractsocketvhipc.h"
#include "qtabstractvhipcpart.h"
#include "qtsocketconnectionkeeper.h"

#include <utility>

QtAbstractVhIpcClientHelper::QtAbstractVhIpcClientHelper(
    QSharedPointer<QtAbstractSocket> socket, QSharedPointer<QtSocketConnectionKeeper> keeper,
    const QSharedPointer<QtAbstractServerLauncher> &launcher,
    QSharedPointer<QtAbstractSocketVhIpc> vhIpc, QObject *parent, QtClock &clock)
    : QtAbstractRemoteClientHelper(std::move(socket), std::move(keeper), launcher, parent, clock),
      m_vhIpc(std::move(vhIpc))
{
    const auto processor = m_vhIpc->processor();
    connect(processor.data(), &QtAbstractVhIpcPart::requiringServerChanged, this,
            &QtAbstractVhIpcClientHelper::enableAutomaticServerLauncher);
    if (processor->isRequiringServer())
        enableAutomaticServerLauncher(true);
}
