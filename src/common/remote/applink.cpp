#include "applink.h"

#include "currentuserservername.h"
#include "localpeeruser.h"
#include "qtabstractsocketvhipc.h"
#include "qtlocalsocket.h"
#include "qtobjectfactory.h"

#include <QLocalSocket>

#include <unistd.h>

QString appServerName() { return currentUserServerName(appServerBaseName); }

QSharedPointer<QtAbstractSocketVhIpc> createAppLink(const QSharedPointer<QtLocalSocket> &socket,
                                                    const QSharedPointer<QtAbstractVhIpcPart> &part)
{
    return QSharedPointer<QtAbstractSocketVhIpc>::create(socket, part, appLinkVersion,
                                                         appLinkUsesCbor);
}

QSharedPointer<QtLocalSocket> createAppClientSocket()
{
    auto socket = qtCreateObject<QtLocalSocket>();
    socket->setRequiredServerUser(::getuid());
    return socket;
}

bool isOwnServerListening(const QString &serverName, int timeoutMs)
{
    QLocalSocket socket;
    socket.connectToServer(serverName);
    return socket.waitForConnected(timeoutMs) && localPeerUser(socket) == ::getuid();
}
