#include "browserinstallation.h"

#include <QDir>
#include <QStandardPaths>

#include <utility>

namespace {

/// A sandboxed browser sees its own folder as the home folder.
UserFolders insideOf(BrowserInstallation::Kind kind, const QString &name, UserFolders folders)
{
    switch (kind) {
    case BrowserInstallation::Kind::Native:
        break;
    case BrowserInstallation::Kind::Flatpak:
        folders.home += QStringLiteral("/.var/app/") + name;
        folders.config = folders.home + QStringLiteral("/config");
        break;
    case BrowserInstallation::Kind::Snap:
        folders.home += QStringLiteral("/snap/") + name + QStringLiteral("/common");
        folders.config = folders.home;
        break;
    }
    return folders;
}

} // namespace

UserFolders UserFolders::ofThisUser(const QString &systemRoot)
{
    return {.home = QDir::homePath(),
            .config = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation),
            .systemRoot = systemRoot};
}

QString UserFolders::resolved(const QString &path) const
{
    if (path.startsWith(u"~C/"))
        return config + path.mid(2);
    if (path.startsWith(u"~/"))
        return home + path.mid(1);
    return systemRoot + path;
}

QList<BrowserInstallation> BrowserInstallation::all(const UserFolders &folders)
{
    QList<BrowserInstallation> installations;
    for (const Browser &browser : BrowserTable::instance().browsers()) {
        installations.append({browser, Kind::Native, browser.id, folders});
        for (const QString &flatpak : browser.flatpaks)
            installations.append({browser, Kind::Flatpak, flatpak, folders});
        if (!browser.snap.isEmpty())
            installations.append(
                {browser, Kind::Snap, QStringLiteral("snap:") + browser.snap, folders});
    }
    return installations;
}

BrowserInstallation::BrowserInstallation(const Browser &browser, Kind kind, QString id,
                                         const UserFolders &folders)
    : m_browser(browser), m_kind(kind), m_id(std::move(id)), m_folders(folders),
      m_profiles(
          existingProfiles(insideOf(kind, kind == Kind::Snap ? browser.snap : m_id, folders)))
{
}

QString BrowserInstallation::title() const
{
    return m_kind == Kind::Native ? m_browser.name
                                  : QStringLiteral("%1 (%2)").arg(m_browser.name, kindName());
}

QString BrowserInstallation::kindName() const
{
    switch (m_kind) {
    case Kind::Native:
        return QStringLiteral("native");
    case Kind::Flatpak:
        return QStringLiteral("Flatpak");
    case Kind::Snap:
        return QStringLiteral("Snap");
    }
    return {};
}

bool BrowserInstallation::isCalled(const QString &name) const
{
    return name == m_id
        || (m_kind == Kind::Native
            && (name.compare(m_browser.name, Qt::CaseInsensitive) == 0
                || name.compare(m_id, Qt::CaseInsensitive) == 0));
}

BrowserInstallation::Way BrowserInstallation::way() const
{
    switch (m_kind) {
    case Kind::Native:
        return Way::Ordinary;
    case Kind::Flatpak:
        return m_browser.flatpakAsksProxy ? Way::Ordinary : Way::Script;
    case Kind::Snap:
        return m_browser.snapStartsHosts ? Way::Ordinary : Way::None;
    }
    return Way::None;
}

QStringList BrowserInstallation::manifestFolders() const
{
    if (!found() || way() == Way::None)
        return {};
    if (m_kind == Kind::Native || way() == Way::Script)
        return inFolders(m_profiles);
    // A sandboxed browser has the same profile folders, in its own home folder.
    const QStringList outside = existingProfiles(m_folders);
    return inFolders(outside.isEmpty()
                         ? QStringList(m_folders.resolved(m_browser.profiles.constFirst()))
                         : outside);
}

QStringList BrowserInstallation::everybodyFolders() const
{
    QStringList folders;
    if (way() == Way::Ordinary) {
        for (const QString &each : m_browser.everybody)
            folders += m_folders.resolved(each);
    }
    return folders;
}

QStringList BrowserInstallation::scriptFolders() const
{
    return m_kind == Kind::Flatpak ? inFolders(m_profiles) : QStringList();
}

QStringList BrowserInstallation::policyFolders() const
{
    QStringList folders;
    // A Flatpak does not see the system's folders.
    if (m_kind != Kind::Flatpak) {
        for (const QString &each : m_browser.policies)
            folders += m_folders.resolved(each);
    }
    return folders;
}

QString BrowserInstallation::extensionForEverybody() const
{
    const bool loadsIt = m_kind == Kind::Native && !m_browser.extension.isEmpty();
    return loadsIt ? m_folders.resolved(m_browser.extension) : QString();
}

QStringList BrowserInstallation::existingProfiles(const UserFolders &seen) const
{
    QStringList existing;
    for (const QString &each : m_browser.profiles) {
        if (const QString path = seen.resolved(each); QDir(path).exists())
            existing += path;
    }
    return existing;
}

QStringList BrowserInstallation::inFolders(const QStringList &profiles) const
{
    QStringList folders;
    for (const QString &each : profiles)
        folders += each + u'/' + m_browser.family.manifestFolder;
    return folders;
}
