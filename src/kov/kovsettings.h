#pragma once

#include <QString>
#include <QStringList>

/// The settings that only the service has, beside those of the application's catalogue.
namespace KovSettings {

/// After so many minutes without work and without clients the service ends; 0: never.
inline QString endsWhenIdleMinutes() { return QStringLiteral("KovEndsWhenIdleMinutes"); }
inline QString defaultEndsWhenIdleMinutes() { return QStringLiteral("5"); }

inline QStringList names() { return {endsWhenIdleMinutes()}; }

} // namespace KovSettings
