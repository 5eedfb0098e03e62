#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

/// The manifest format that browsers of one origin share.
struct BrowserFamily {
    QString name;
    /// The manifest's key for the extensions that may start the host, and its value.
    QString idsKey;
    QStringList ids;
    /// The name of the folder for manifests in a profile folder.
    QString manifestFolder;

    bool isFirefox() const { return name == u"firefox"; }
    /// The extension's id as the browser's own files have it: that in "chrome-extension://ID/", or
    /// the id itself.
    QString extensionId() const
    {
        return isFirefox() ? ids.constFirst() : ids.constFirst().section(u'/', 2, 2);
    }
};

/// A supported browser. Paths begin with "~C/", the user's configuration folder, "~/", the home
/// folder, or "/".
struct Browser {
    /// As on command lines.
    QString id;
    QString name;
    BrowserFamily family;
    /// Folders that exist when the browser is installed.
    QStringList profiles;
    /// Folders for system-wide manifests.
    QStringList everybody;
    /// Policy folders; empty when unknown.
    QStringList policies;
    /// Where a package installs the extension for all users; empty if the browser has no such
    /// folder.
    QString extension;
    /// The ids of its Flatpaks.
    QStringList flatpaks;
    /// In a Flatpak it starts hosts through a proxy on the session bus, outside the sandbox.
    bool flatpakAsksProxy = false;
    /// The name of its Snap; may be empty.
    QString snap;
    /// Whether the Snap can start hosts outside its sandbox.
    bool snapStartsHosts = false;
};

/// The supported browsers, from the resource "browsers.json".
class BrowserTable {
public:
    static const BrowserTable &instance();

    /// The host's name for extensions (chrome.runtime.connectNative()) and manifests.
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
