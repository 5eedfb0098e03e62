#pragma once

#include "browserinstallation.h"

#include <QList>
#include <QString>

/// Writes the files by which browsers find the host, and removes them.
class Registrar {
public:
    /// What was done with one file.
    struct Result {
        enum class Done { Written, Unchanged, Removed, LeftAlone, Failed };
        Done done;
        QString path;
        /// Why, for the last two.
        QString reason;
    };

    /// The host's path is absolute.
    explicit Registrar(QString hostPath);

    /// The manifests of a browser that takes the ordinary way. Writing is atomic, and a file that
    /// says all of it already is not touched.
    QList<Result> registerOrdinary(const BrowserInstallation &installation) const;
    /// The script in a Flatpak's folder, and the manifest that names it.
    QList<Result> registerScript(const BrowserInstallation &installation) const;
    /// What the browser needs whatever its way is; nothing for those without one.
    QList<Result> registerHost(const BrowserInstallation &installation) const;
    /// The manifests in the first folder for everybody of each browser that has one.
    QList<Result> registerForEverybody(const UserFolders &folders) const;

    /// Removes what is ours, by its name and by what it says, from wherever it would be written.
    static QList<Result> unregister(const BrowserInstallation &installation);
    static QList<Result> unregisterForEverybody(const UserFolders &folders);

private:
    Result writeManifest(const QString &folder, const BrowserFamily &family,
                         const QString &path) const;

    const QString m_hostPath;
};
