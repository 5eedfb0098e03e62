#include "flatpaksandbox.h"

#include "shellquoted.h"

#include <QFile>
#include <QSettings>
#include <QStandardPaths>

#include <optional>

namespace {

/// The D-Bus name of the service that starts programs outside a sandbox.
QString serviceName() { return QStringLiteral("org.freedesktop.Flatpak"); }

QByteArray startingLine() { return "exec flatpak-spawn --host "; }
QByteArray endingOfLine() { return " \"$@\"\n"; }

/// The service's entry in the permissions file, if any.
std::optional<bool> grantIn(const QString &filePath)
{
    const QSettings permissions(filePath, QSettings::IniFormat);
    const QString policy =
        permissions.value(QStringLiteral("Session Bus Policy/") + serviceName()).toString();
    if (policy.isEmpty())
        return std::nullopt;
    return policy == u"talk" || policy == u"own";
}

} // namespace

QString FlatpakSandbox::scriptPath(const QString &manifestFolder)
{
    return manifestFolder + u'/' + BrowserTable::instance().hostName() + QStringLiteral(".sh");
}

QByteArray FlatpakSandbox::script(const QString &flatpakId, const QString &hostPath)
{
    return "#!/bin/sh\n"
           "# Starts the Kovalo native messaging host outside of the sandbox. Made by\n"
           "# kovalo-host register --flatpak "
        + flatpakId.toUtf8() + '\n' + startingLine() + shellQuoted(hostPath).toUtf8()
        + endingOfLine();
}

QString FlatpakSandbox::hostOfScript(const QByteArray &script)
{
    const qsizetype start = script.indexOf(startingLine());
    const qsizetype end = script.indexOf(endingOfLine(), start);
    if (start < 0 || end < 0)
        return {};
    const qsizetype from = start + startingLine().size();
    return shellUnquoted(QString::fromUtf8(script.mid(from, end - from)));
}

QString FlatpakSandbox::grantCommand(const QString &flatpakId)
{
    return QStringLiteral("flatpak override --user --talk-name=%1 %2")
        .arg(serviceName(), flatpakId);
}

bool FlatpakSandbox::isGranted(const QString &flatpakId, const UserFolders &folders)
{
    const QString users = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)
        + QStringLiteral("/flatpak");
    const QString everybodys = folders.systemRoot + QStringLiteral("/var/lib/flatpak");
    const QString own = QStringLiteral("/overrides/") + flatpakId;
    const QString ofAll = QStringLiteral("/overrides/global");
    const QString makers = QStringLiteral("/app/%1/current/active/metadata").arg(flatpakId);
    // The first match decides.
    for (const QString &path : {users + own, users + ofAll, everybodys + own, everybodys + ofAll,
                                users + makers, everybodys + makers}) {
        if (!QFile::exists(path))
            continue;
        if (const auto grant = grantIn(path))
            return *grant;
    }
    return false;
}
