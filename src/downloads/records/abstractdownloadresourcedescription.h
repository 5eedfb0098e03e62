#pragma once

#include "abstractdownloadenums.h"

#include <QList>
#include <QString>
#include <QUrl>
#include <QVariantHash>

/// The page's description of the downloaded resource, to be shown to the user.
struct AbstractDownloadResourceDescription {
    QString title;
    QList<AbstractFileType> filesTypes;
    QUrl previewImageUrl;
    /// The duration in readable form, such as "3:25".
    QString mediaDurationHr;
    /// The age in readable form, such as "2 days ago".
    QString ageHr;

    bool operator==(const AbstractDownloadResourceDescription &) const = default;
};

QVariantHash toVariantHash(const AbstractDownloadResourceDescription &description);
AbstractDownloadResourceDescription toDownloadResourceDesc(const QVariantHash &hash);
