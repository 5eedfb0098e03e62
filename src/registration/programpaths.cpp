#include "programpaths.h"

#include "shellquoted.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace {

/// The folder, relative to that of the programs, if it contains the extension.
QString extensionIn(const QString &relative)
{
    const QString folder = QDir::cleanPath(QCoreApplication::applicationDirPath() + relative);
    return QFileInfo::exists(folder + QStringLiteral("/manifest.json")) ? folder : QString();
}

} // namespace

QString ProgramPaths::host()
{
    return QCoreApplication::applicationDirPath() + QStringLiteral("/wenativehost");
}

QString ProgramPaths::hostRepair()
{
    const QFileInfo info(host());
    if (!info.isFile())
        return QStringLiteral("sudo apt-get install --reinstall kovalo-native-host");
    return info.isExecutable() ? QString() : ownersCommand(QStringLiteral("chmod +x"), host());
}

QString ProgramPaths::unpackedExtension() { return extensionIn(QStringLiteral("/../extension")); }

QString ProgramPaths::packagedExtension()
{
    return extensionIn(QStringLiteral("/../../share/webext/kovalo"));
}

QString ProgramPaths::ownCommand()
{
    const QString own = QCoreApplication::applicationFilePath();
    const QString name = QFileInfo(own).fileName();
    const QString called = QStandardPaths::findExecutable(name);
    return QFileInfo(called).canonicalFilePath() == own ? name : shellQuoted(own);
}
