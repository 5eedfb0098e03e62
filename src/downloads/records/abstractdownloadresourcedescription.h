#pragma once

#include "abstractdownloadenums.h"

#include <QList>
#include <QString>
#include <QUrl>
#include <QVariantHash>

/// What the page tells about what is downloaded, to be shown to the user.
struct AbstractDownloadResourceDescription {
    QString title;
    QList<AbstractFileType> filesTypes;
    QUrl previewImageUrl;
    /// The duration as a person reads it, such as "3:25".
    QString mediaDurationHr;
    /// The age as a person reads it, such as "2 days ago".
    QString ageHr;

    bool operator==(const AbstractDownloadResourceDescription &) const = default;
};

QVariantHash toVariantHash(const AbstractDownloadResourceDescription &description);
AbstractDownloadResourceDescription toDownloadResourceDesc(const QVariantHash &hash);
