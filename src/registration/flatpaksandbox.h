#pragma once

#include "browserinstallation.h"

#include <QByteArray>
#include <QString>

/// The script that a browser in a Flatpak starts as its host; it starts the real one outside.
namespace FlatpakSandbox {
/// The script is beside the manifest that names it.
QString scriptPath(const QString &manifestFolder);
QByteArray script(const QString &flatpakId, const QString &hostPath);
/// The host that a script starts; empty when the script is not ours.
QString hostOfScript(const QByteArray &script);

/// The command that gives the browser the permission to start programs outside.
QString grantCommand(const QString &flatpakId);
/// Whether the user, or the Flatpak's maker, gave that permission.
bool isGranted(const QString &flatpakId, const UserFolders &folders);
} // namespace FlatpakSandbox
