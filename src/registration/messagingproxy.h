#pragma once

#include <QString>

/// The service outside that starts hosts for browsers in sandboxes.
namespace MessagingProxy {
QString serviceName();
/// Whether somebody has that name on the session bus, or would be started for it.
bool isReachable();
} // namespace MessagingProxy
