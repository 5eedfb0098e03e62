#include "registrar.h"

#include "flatpaksandbox.h"
#include "hostmanifest.h"
#include "shellquoted.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QSaveFile>

#include <utility>

namespace {

using Result = Registrar::Result;

constexpr QFile::Permissions readableByAll =
    QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup | QFile::ReadOther;
constexpr QFile::Permissions executableByAll =
    readableByAll | QFile::ExeOwner | QFile::ExeGroup | QFile::ExeOther;

/// QFile also reports the bits for the current user, so only the owner's are comparable.
QFile::Permissions ownersBits(QFile::Permissions permissions)
{
    return permissions & (QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

/// What is in it is not ours to remove. Empty when no folder is in the file's place.
QString folderInPlace(const QString &path)
{
    const QFileInfo info(path);
    if (!info.isDir() || info.isSymbolicLink())
        return {};
    return QStringLiteral("a folder is in its place. To put it aside: ") + moveAsideCommand(path);
}

Result write(const QString &path, const QByteArray &content, QFile::Permissions permissions)
{
    QFile present(path);
    if (present.open(QIODevice::ReadOnly) && present.readAll() == content
        && ownersBits(present.permissions()) == ownersBits(permissions))
        return {Result::Done::Unchanged, path, {}};
    if (const QString reason = folderInPlace(path); !reason.isEmpty())
        return {Result::Done::Failed, path, reason};
    const QString folder = QFileInfo(path).path();
    if (!QDir().mkpath(folder))
        return {Result::Done::Failed, path, QStringLiteral("the folder cannot be made")};
    // QSaveFile would write to the target of a link, which is not ours and may be missing.
    if (QFile link(path); QFileInfo(path).isSymbolicLink() && !link.remove())
        return {Result::Done::Failed, path, link.errorString()};
    // QSaveFile replaces no file that may not be written.
    if (present.exists() && !QFileInfo(path).isWritable())
        present.setPermissions(permissions);
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly) && file.setPermissions(permissions)
        && file.write(content) == content.size() && file.commit())
        return {Result::Done::Written, path, {}};
    return {Result::Done::Failed, path, file.errorString()};
}

Result remove(const QString &path)
{
    QFile file(path);
    if (file.remove())
        return {Result::Done::Removed, path, {}};
    return {Result::Done::Failed, path, file.errorString()};
}

QString manifestPath(const QString &folder)
{
    return folder + u'/' + BrowserTable::instance().manifestFileName();
}

QList<Result> removeManifest(const QString &folder, const BrowserFamily &family)
{
    const QString path = manifestPath(folder);
    const QFileInfo info(path);
    if (!info.exists() && !info.isSymbolicLink())
        return {};
    if (QFile file(path); info.isFile() && !file.open(QIODevice::ReadOnly))
        return {{Result::Done::Failed, path,
                 QStringLiteral("it cannot be read: ") + file.errorString()}};
    if (!HostManifest::isOurs(path, family))
        return {{Result::Done::LeftAlone, path, QStringLiteral("it is no manifest of this host")}};
    return {remove(path)};
}

/// Removes the script once no manifest names it any more.
QList<Result> removeScript(const QString &folder)
{
    const QString path = FlatpakSandbox::scriptPath(folder);
    QFile file(path);
    if (QFileInfo::exists(manifestPath(folder)) || !file.open(QIODevice::ReadOnly))
        return {};
    if (FlatpakSandbox::hostOfScript(file.readAll()).isEmpty())
        return {{Result::Done::LeftAlone, path, QStringLiteral("it is no script of this host")}};
    return {remove(path)};
}

/// Maps the system-wide folders, which browsers may share, to the browsers' family.
QMap<QString, BrowserFamily> foldersForEverybody(const UserFolders &folders)
{
    QMap<QString, BrowserFamily> all;
    for (const Browser &browser : BrowserTable::instance().browsers()) {
        if (!browser.everybody.isEmpty())
            all.insert(folders.resolved(browser.everybody.constFirst()), browser.family);
    }
    return all;
}

} // namespace

Registrar::Registrar(QString hostPath) : m_hostPath(std::move(hostPath)) { }

QList<Result> Registrar::registerOrdinary(const BrowserInstallation &installation) const
{
    QList<Result> results;
    const QStringList folders = installation.manifestFolders();
    for (const QString &folder : folders)
        results += writeManifest(folder, installation.browser().family, m_hostPath);
    return results;
}

QList<Result> Registrar::registerScript(const BrowserInstallation &installation) const
{
    QList<Result> results;
    const QStringList folders = installation.scriptFolders();
    for (const QString &folder : folders) {
        const QString script = FlatpakSandbox::scriptPath(folder);
        // The script first, so that no manifest names a missing file.
        results +=
            write(script, FlatpakSandbox::script(installation.id(), m_hostPath), executableByAll);
        if (results.constLast().done != Result::Done::Failed)
            results += writeManifest(folder, installation.browser().family, script);
    }
    return results;
}

QList<Result> Registrar::registerHost(const BrowserInstallation &installation) const
{
    switch (installation.way()) {
    case BrowserInstallation::Way::Ordinary:
        return registerOrdinary(installation);
    case BrowserInstallation::Way::Script:
        return registerScript(installation);
    case BrowserInstallation::Way::None:
        break;
    }
    return {};
}

QList<Result> Registrar::registerForEverybody(const UserFolders &folders) const
{
    QList<Result> results;
    const QMap<QString, BrowserFamily> all = foldersForEverybody(folders);
    for (auto folder = all.cbegin(); folder != all.cend(); ++folder)
        results += writeManifest(folder.key(), folder.value(), m_hostPath);
    return results;
}

QList<Result> Registrar::unregister(const BrowserInstallation &installation)
{
    const BrowserFamily &family = installation.browser().family;
    QList<Result> results;
    const QStringList ordinary = installation.manifestFolders();
    const QStringList scripts = installation.scriptFolders();
    for (const QString &folder : ordinary) {
        if (!scripts.contains(folder))
            results += removeManifest(folder, family);
    }
    for (const QString &folder : scripts) {
        results += removeManifest(folder, family);
        results += removeScript(folder);
    }
    return results;
}

QList<Result> Registrar::unregisterForEverybody(const UserFolders &folders)
{
    QList<Result> results;
    const QMap<QString, BrowserFamily> all = foldersForEverybody(folders);
    for (auto folder = all.cbegin(); folder != all.cend(); ++folder)
        results += removeManifest(folder.key(), folder.value());
    return results;
}

Result Registrar::writeManifest(const QString &folder, const BrowserFamily &family,
                                const QString &path) const
{
    return write(manifestPath(folder), HostManifest::content(family, path), readableByAll);
}
