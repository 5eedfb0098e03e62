#pragma once

#include <QString>

/// The portal service that starts hosts for sandboxed browsers.
namespace MessagingProxy {
QString serviceName();
/// Whether the name is owned, or can be activated, on the session bus.
bool isReachable();
} // namespace MessagingProxy
