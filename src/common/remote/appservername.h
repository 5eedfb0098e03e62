#pragma once

#include "ipcversion.h"

#include <QString>

/// The name of the local socket on which this user's main application serves its clients.
QString appServerName();

/// The parameters of the link on it, for both ends: no handshake, and bodies in QDataStream's
/// format.
constexpr IpcVersion appLinkVersion = 0;
constexpr bool appLinkUsesCbor = false;
