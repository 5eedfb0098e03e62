#pragma once

#include "browserinstallation.h"

#include <QList>
#include <QString>

/// Writes and removes the files by which browsers find the host.
class Registrar {
public:
    /// The result for one file.
    struct Result {
        enum class Done { Written, Unchanged, Removed, LeftAlone, Failed };
        Done done;
        QString path;
        /// For LeftAlone and Failed.
        QString reason;
    };

    /// The path must be absolute.
    explicit Registrar(QString hostPath);

    /// Writes the manifests of a browser with the ordinary way. Writing is atomic, and a file that
    /// is up to date is not touched.
    QList<Result> registerOrdinary(const BrowserInstallation &installation) const;
    /// Writes the script in a Flatpak's folder, and the manifest that names it.
    QList<Result> registerScript(const BrowserInstallation &installation) const;
    /// Writes the files for the browser's way; none for the way None.
    QList<Result> registerHost(const BrowserInstallation &installation) const;
    /// Writes a manifest to the first system-wide folder of each browser that has one.
    QList<Result> registerForEverybody(const UserFolders &folders) const;

    /// Removes files with our name and content from all folders where they would be written.
    static QList<Result> unregister(const BrowserInstallation &installation);
    static QList<Result> unregisterForEverybody(const UserFolders &folders);

private:
    Result writeManifest(const QString &folder, const BrowserFamily &family,
                         const QString &path) const;

    const QString m_hostPath;
};
