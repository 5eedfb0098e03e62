#include "chains.h"

#include "appcoreconfig.h"
#include "appdataaccesshelper.h"
#include "databaseprobe.h"
#include "dmcoresettings.h"
#include "portableversionmanager.h"
#include "qtappabstractsettingsmanager.h"
#include "qtappconfigbase.h"
#include "qtappportablemodesupport.h"
#include "shellquoted.h"
#include "systemdefaultdownloadlocation.h"

#include <QDir>
#include <QFileInfo>
#include <QSharedPointer>
#include <QSqlDatabase>

#include <unistd.h>

namespace {

/// The folder itself, or its nearest existing ancestor, in which it would be created.
QFileInfo existingPlaceOf(const QString &path)
{
    QFileInfo place(path);
    while (!place.exists() && !place.isSymbolicLink() && !place.isRoot())
        place = QFileInfo(place.absolutePath());
    return place;
}

/// Whether files can be created there; if not, "reason" is set.
bool isUsableFolder(const QFileInfo &place, QString &reason)
{
    if (!place.isDir())
        reason = QStringLiteral("%1 is no folder").arg(place.filePath());
    else if (!place.isWritable() || !place.isExecutable() || !place.isReadable())
        reason = QStringLiteral("you may not write to %1").arg(place.filePath());
    return reason.isEmpty();
}

/// Restores the owner's permissions.
bool makeUsable(const QString &path)
{
    const QFile::Permissions needed = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;
    return QFile::setPermissions(path, QFile::permissions(path) | needed);
}

/// The command that gives the user these permissions. Only the owner and root can change them.
QString permissionCure(const QString &rights, const QString &path)
{
    if (QFileInfo(path).ownerId() == ::geteuid())
        return QStringLiteral("chmod %1 %2").arg(rights, shellQuoted(path));
    if (path.startsWith(QDir::homePath() + u'/'))
        return QStringLiteral("sudo chown -R \"$USER\" %1").arg(shellQuoted(path));
    return QStringLiteral("choose another folder, or ask whoever administers this machine for the "
                          "right to write to %1")
        .arg(path);
}

void checkFolder(Chain &chain, const QString &link, const QString &what, const QString &path)
{
    const QFileInfo place = existingPlaceOf(path);
    QString reason;
    if (isUsableFolder(place, reason)) {
        chain.ok(link,
                 what
                     + QStringLiteral(" is %1%2")
                           .arg(path,
                                QFileInfo::exists(path)
                                    ? QString()
                                    : QStringLiteral(", to be made when it is needed")));
        return;
    }
    const QString broken = place.filePath();
    if (!place.isDir())
        chain.broken(link, what + QStringLiteral(" cannot be used: ") + reason,
                     QStringLiteral("mv %1 %1.old").arg(shellQuoted(broken)));
    else
        chain.broken(link, what + QStringLiteral(" cannot be used: ") + reason,
                     permissionCure(QStringLiteral("u+rwx"), broken),
                     [broken] { return makeUsable(broken); });
}

void checkDatabase(Chain &chain, const QString &path)
{
    const QString opens = QStringLiteral("database-opens");
    const QString whole = QStringLiteral("database-whole");
    const QString unlocked = QStringLiteral("database-unlocked");
    if (!QFileInfo::exists(path)) {
        chain.ok(opens, QStringLiteral("there is no database yet; the host makes it"));
        chain.notReached({whole, unlocked}, QStringLiteral("there is no database yet"));
        return;
    }
    const DatabaseProbe probe(path);
    const QString moveAway =
        QStringLiteral("mv %1 %1.broken    (the settings start anew)").arg(shellQuoted(path));
    if (!probe.openFailure.isEmpty()) {
        const bool isWritable = QFileInfo(path).isWritable() && QFileInfo(path).isReadable();
        chain.broken(
            opens, QStringLiteral("%1 cannot be used: %2").arg(path, probe.openFailure),
            isWritable ? moveAway : permissionCure(QStringLiteral("u+rw"), path),
            isWritable ? std::function<bool()>() : [path] {
                return QFile::setPermissions(
                    path, QFile::permissions(path) | QFile::ReadOwner | QFile::WriteOwner);
            });
        chain.notReached({whole, unlocked}, QStringLiteral("it cannot be opened"));
        return;
    }
    chain.ok(opens, QStringLiteral("the database is %1").arg(path));
    if (probe.isLocked) {
        chain.notChecked(whole, QStringLiteral("it is locked"));
        chain.broken(
            unlocked, QStringLiteral("another program has locked it, and does not let go"),
            QStringLiteral("end the program that \"fuser %1\" names").arg(shellQuoted(path)));
        return;
    }
    if (probe.damage.isEmpty())
        chain.ok(whole, QStringLiteral("it is whole"));
    else
        chain.broken(whole, QStringLiteral("it is damaged: ") + probe.damage, moveAway);
    chain.ok(unlocked, QStringLiteral("no program keeps it locked"));
}

/// The download folder is a setting.
QString downloadsFolder(const AppDataAccessHelper &store, bool isStoreUsable)
{
    QString chosen;
    if (isStoreUsable && QFileInfo::exists(store.databaseFilePath()))
        chosen = store.settings()->value(toString(DmCoreSettings::DefaultDownloadPath));
    return chosen.isEmpty() ? systemDefaultDownloadLocation() : chosen;
}

} // namespace

Chain examineStorage(const QString &hostFolder)
{
    Chain chain{.subject = QStringLiteral("storage"),
                .browser = {},
                .title = QStringLiteral("What is kept"),
                .findings = {}};
    const QString portableFolder = PortableVersionManager::dataDirIn(hostFolder).path();
    const bool isPortable =
        PortableVersionManager::supportsPortableMode() && QFileInfo::exists(portableFolder);
    const auto portable =
        QSharedPointer<PortableVersionManager>::create(isPortable ? portableFolder : QString());
    const AppCoreConfig config(QSharedPointer<QtAppConfigBase>::create(), portable);
    const QString portableLink = QStringLiteral("portable");
    if (isPortable)
        chain.ok(portableLink,
                 QStringLiteral("it is a portable installation, with its data beside it"));
    else if (QFileInfo::exists(portableFolder))
        chain.impaired(portableLink,
                       QStringLiteral("%1 is there, but this build keeps nothing beside itself")
                           .arg(portableFolder),
                       QStringLiteral("mv %1 %1.unused").arg(shellQuoted(portableFolder)));
    else
        chain.ok(portableLink, QStringLiteral("it is no portable installation"));

    const QString driverLink = QStringLiteral("sql-driver");
    const bool hasDriver = QSqlDatabase::isDriverAvailable(QStringLiteral("QSQLITE"));
    if (hasDriver)
        chain.ok(driverLink, QStringLiteral("Qt's driver for SQLite is there"));
    else
        chain.broken(driverLink, QStringLiteral("Qt's driver for SQLite is missing"),
                     QStringLiteral("sudo apt-get install libqt6sql6-sqlite"));

    checkFolder(chain, QStringLiteral("data-folder"), QStringLiteral("the folder of the settings"),
                config.dataDir().path());
    const AppDataAccessHelper store(config.dataDir(), portable->portableModeSupport());
    if (hasDriver)
        checkDatabase(chain, store.databaseFilePath());
    else
        chain.notReached({QStringLiteral("database-opens"), QStringLiteral("database-whole"),
                          QStringLiteral("database-unlocked")},
                         QStringLiteral("there is no driver"));
    checkFolder(chain, QStringLiteral("downloads-folder"), QStringLiteral("the downloads folder"),
                downloadsFolder(store, chain.isIntact()));
    return chain;
}
