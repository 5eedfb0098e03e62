#pragma once

#include <sys/types.h>

#include <optional>

class QLocalSocket;

/**
 * The user of the process at the other end of a connection, at the time when it began to listen
 * (SO_PEERCRED, see unix(7)); nothing if unknown.
 *
 * Any user can create a socket of an expected name in a shared folder, so clients check the peer
 * before anything is read or written.
 */
std::optional<uid_t> localPeerUser(const QLocalSocket &socket);
