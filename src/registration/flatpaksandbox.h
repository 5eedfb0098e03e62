#pragma once

#include "browserinstallation.h"

#include <QByteArray>
#include <QString>

/// How a browser in a Flatpak starts a host outside of it: by a script that is its host.
namespace FlatpakSandbox {
/// The script lies beside the manifest that names it.
QString scriptPath(const QString &manifestFolder);
QByteArray script(const QString &flatpakId, const QString &hostPath);
/// The host that a script starts; empty when it is none of ours.
QString hostOfScript(const QByteArray &script);

/// The command by which the user lets the browser start programs outside.
QString grantCommand(const QString &flatpakId);
/// Whether the user, or the Flatpak's maker, did.
bool isGranted(const QString &flatpakId, const UserFolders &folders);
} // namespace FlatpakSandbox
