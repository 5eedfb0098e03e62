#pragma once

#include "ipcversion.h"

#include <QString>

/// The name of the local socket on which this user's main application serves its clients.
QString appServerName();

/// How the link on it is set up, at both ends: without a handshake, its bodies in QDataStream's
/// form.
constexpr IpcVersion appLinkVersion = 0;
constexpr bool appLinkUsesCbor = false;
