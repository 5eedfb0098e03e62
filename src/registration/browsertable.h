#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

/// What browsers of one origin have in common: the form of a manifest.
struct BrowserFamily {
    QString name;
    /// The manifest's list of the extensions that may start the host, and what is in it.
    QString idsKey;
    QStringList ids;
    /// The name of the folder of manifests in a profile folder.
    QString manifestFolder;

    bool isFirefox() const { return name == u"firefox"; }
};

/// A browser that can be told of the host. Paths begin with "~C/", the user's configuration folder,
/// "~/", the home folder, or "/".
struct Browser {
    /// For command lines.
    QString id;
    QString name;
    BrowserFamily family;
    /// Folders that exist when the browser does.
    QStringList profiles;
    /// Folders of manifests that hold for every user.
    QStringList everybody;
    /// Folders of policies; empty where they are not known.
    QStringList policies;
    /// Where a package puts the extension, for the browser to load it; empty where it looks
    /// nowhere.
    QString extension;
    /// The Flatpaks that it comes as.
    QStringList flatpaks;
    /// In a Flatpak it asks a proxy on the session bus for hosts, and finds those outside.
    bool flatpakAsksProxy = false;
    /// The Snap that it comes as; may be empty.
    QString snap;
    /// In a Snap it finds the hosts outside. Otherwise it can start none of them.
    bool snapStartsHosts = false;
};

/// The browsers that are known, from the resource "browsers.json".
class BrowserTable {
public:
    static const BrowserTable &instance();

    /// The name under which extensions ask for the host, and that of its manifests.
    QString hostName() const { return m_hostName; }
    QString manifestFileName() const { return m_hostName + QStringLiteral(".json"); }
    QString hostDescription() const { return m_hostDescription; }
    const QList<Browser> &browsers() const { return m_browsers; }

private:
    BrowserTable();

    QString m_hostName;
    QString m_hostDescription;
    QList<Browser> m_browsers;
};
