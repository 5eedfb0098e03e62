#pragma once

#include "browsertable.h"

#include <QString>
#include <QStringList>

/// Where the folders that browsers look into are on this machine, for this user.
struct UserFolders {
    QString home;
    /// $XDG_CONFIG_HOME, else ".config" in the home folder.
    QString config;
    /// What stands before the paths that hold for everybody: empty, or the folder of a system that
    /// is being put together.
    QString systemRoot;

    static UserFolders ofThisUser(const QString &systemRoot = {});
    /// A path of the table.
    QString resolved(const QString &path) const;
};

/// A browser as the user may have it: one of the table, in one of the ways in which it comes.
class BrowserInstallation {
public:
    enum class Kind { Native, Flatpak, Snap };
    /// How the browser comes to a host.
    enum class Way {
        /// By the manifests of the user and of everybody.
        Ordinary,
        /// By a script in its folder that starts the host outside of the sandbox.
        Script,
        /// Not at all.
        None,
    };

    /// Every browser of the table in every kind; found() tells which of them are there.
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
    /// Whether it is what the user calls by this name: an id, or a browser's name in any case.
    bool isCalled(const QString &name) const;

    Way way() const;
    /// The user's folders of manifests that are to hold one. Empty for the way None, and for a
    /// browser that is not found.
    QStringList manifestFolders() const;
    /// Those that hold for everybody, in which the browser looks as well.
    QStringList everybodyFolders() const;
    /// The same for the script, whether or not the browser also goes another way.
    QStringList scriptFolders() const;
    QStringList policyFolders() const;
    /// Where the extension is found that the browser loads for every user; empty where it loads
    /// none.
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
