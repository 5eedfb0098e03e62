#include "localpeeruser.h"

#include <QLocalSocket>

#include <sys/socket.h>

std::optional<uid_t> localPeerUser(const QLocalSocket &socket)
{
    ucred credentials = {};
    socklen_t size = sizeof(credentials);
    if (::getsockopt(static_cast<int>(socket.socketDescriptor()), SOL_SOCKET, SO_PEERCRED,
                     &credentials, &size)
        != 0)
        return std::nullopt;
    return credentials.uid;
}
