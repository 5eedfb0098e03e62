#pragma once

#include <QByteArray>
#include <QString>
#include <QVariantHash>

/// Where a download is saved.
struct AbstractDownloadDestination {
    /// The kind of destination; 0 is the file system.
    int type = 0;
    /// The folder or file; the application's own choice if empty.
    QString path;
    /// Further values for that kind of destination.
    QByteArray data;

    bool operator==(const AbstractDownloadDestination &) const = default;
};

QVariantHash toVariantHash(const AbstractDownloadDestination &destination);
AbstractDownloadDestination toDownloadDestination(const QVariantHash &hash);
