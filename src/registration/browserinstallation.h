#pragma once

#include "browsertable.h"

#include <QString>
#include <QStringList>

/// The base folders of this machine and user below which browsers look for manifests.
struct UserFolders {
    QString home;
    /// $XDG_CONFIG_HOME, else ".config" in the home folder.
    QString config;
    /// The prefix of the system-wide paths: empty, or the staging folder of a package (DESTDIR).
    QString systemRoot;

    static UserFolders ofThisUser(const QString &systemRoot = {});
    /// Expands a path of the table.
    QString resolved(const QString &path) const;
};

/// A browser of the table in one of the kinds in which it can be installed.
class BrowserInstallation {
public:
    enum class Kind { Native, Flatpak, Snap };
    /// How the browser finds and starts a host.
    enum class Way {
        /// By the user's and the system-wide manifests.
        Ordinary,
        /// By a script in its folder that starts the host outside the sandbox.
        Script,
        /// It cannot start hosts.
        None,
    };

    /// Every browser of the table in every kind; found() says whether it is installed.
    static QList<BrowserInstallation> all(const UserFolders &folders);

    const Browser &browser() const { return m_browser; }
    Kind kind() const { return m_kind; }
    /// The browser's id, the Flatpak's, or "snap:" and the Snap's name.
    QString id() const { return m_id; }
    /// Such as "Firefox (Flatpak)".
    QString title() const;
    QString kindName() const;

    /// The browser's profile folders that exist.
    const QStringList &profiles() const { return m_profiles; }
    bool found() const { return !m_profiles.isEmpty(); }
    /// Whether the name matches: an id, or the browser's name, case-insensitively.
    bool isCalled(const QString &name) const;

    Way way() const;
    /// The user's folders in which to write manifests. Empty for the way None, and when the browser
    /// is not found.
    QStringList manifestFolders() const;
    /// The system-wide folders of manifests, which the browser reads, too.
    QStringList everybodyFolders() const;
    /// The folders for the script, whether or not the browser also has another way.
    QStringList scriptFolders() const;
    QStringList policyFolders() const;
    /// The system-wide folder from which the browser loads the extension; empty if it has none.
    QString extensionForEverybody() const;
    const UserFolders &folders() const { return m_folders; }

private:
    BrowserInstallation(const Browser &browser, Kind kind, QString id, const UserFolders &folders);
    /// The browser's profile folders that exist, seen from "home" and "config".
    QStringList existingProfiles(const UserFolders &seen) const;
    QStringList inFolders(const QStringList &profiles) const;

    Browser m_browser;
    Kind m_kind;
    QString m_id;
    UserFolders m_folders;
    QStringList m_profiles;
};
