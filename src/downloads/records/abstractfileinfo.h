#pragma once

#include "abstractfiledetails.h"

#include <QDateTime>
#include <QString>
#include <QVariantHash>

/// A file, on disk or at its source.
struct AbstractFileInfo {
    /// Where the file comes from; 0 is the source of the download.
    int originType = 0;
    AbstractFileDetails details;
    QString path;
    /// In bytes.
    qint64 size = 0;
    /// Of millisecond precision; not encoded when invalid, and decoded as UTC.
    QDateTime lastModified;

    QVariantHash toVariantHash() const;
    static AbstractFileInfo fromVariantHash(const QVariantHash &hash);

    bool operator==(const AbstractFileInfo &) const = default;
};
