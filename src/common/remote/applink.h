#pragma once

#include "ipcversion.h"

#include <QLatin1StringView>
#include <QSharedPointer>
#include <QString>

class QtAbstractSocketVhIpc;
class QtAbstractVhIpcPart;
class QtLocalSocket;

/// What the name of the application's local socket begins with. The user's id follows.
inline constexpr QLatin1StringView appServerBaseName("kov6fs");

/// The name of the local socket on which this user's main application serves its clients.
QString appServerName();

/// The parameters of the link on it, for both ends: no handshake, and bodies in QDataStream's
/// format.
constexpr IpcVersion appLinkVersion = 0;
constexpr bool appLinkUsesCbor = false;

/// The link on a socket, at either end.
QSharedPointer<QtAbstractSocketVhIpc>
createAppLink(const QSharedPointer<QtLocalSocket> &socket,
              const QSharedPointer<QtAbstractVhIpcPart> &part);

/// A client's socket: it connects only to a server that runs as this user. See
/// QtLocalSocket::setRequiredServerUser().
QSharedPointer<QtLocalSocket> createAppClientSocket();

/// Whether a server of that name accepts a connection and runs as this user. Blocks for up to so
/// long.
bool isOwnServerListening(const QString &serverName, int timeoutMs);
