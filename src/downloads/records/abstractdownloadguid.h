#pragma once

#include <QString>
#include <QVariantHash>

/// The identity of a download in another system. An empty guid means that there is none, whatever
/// the types are; it is not encoded.
struct AbstractDownloadGuid {
    /// How the guid is formed; 0 is unknown.
    int guidType = 0;
    /// The system that assigned it; 0 is unknown.
    int type = 0;
    QString guid;

    bool operator==(const AbstractDownloadGuid &) const = default;
};

QVariantHash toVariantHash(const AbstractDownloadGuid &guid);
AbstractDownloadGuid toDownloadGuid(const QVariantHash &hash);
