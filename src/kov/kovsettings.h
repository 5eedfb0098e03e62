#pragma once

#include <QString>
#include <QStringList>

/// The settings of the service that are not in the application's catalogue.
namespace KovSettings {

/// The idle time in minutes, without work or clients, after which the service ends; 0: never.
inline QString endsWhenIdleMinutes() { return QStringLiteral("KovEndsWhenIdleMinutes"); }
inline QString defaultEndsWhenIdleMinutes() { return QStringLiteral("5"); }

inline QStringList names() { return {endsWhenIdleMinutes()}; }

} // namespace KovSettings
