#pragma once

#include <QProcess>
#include <QString>

/// The user's desktop.
namespace KovDesktop {

/// Shows a file or a folder in the program that the desktop has for it (the freedesktop.org
/// xdg-utils); false when it has no means to.
inline bool open(const QString &path)
{
    return QProcess::startDetached(QStringLiteral("xdg-open"), {path});
}

} // namespace KovDesktop
