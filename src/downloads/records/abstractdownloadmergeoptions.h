#pragma once

#include "abstractdownloadenums.h"

#include <QList>
#include <QVariantHash>
#include <QVariantList>

/// How a new download is merged into an existing one of the same resource.
struct AbstractDownloadMergeOptions {
    /// What the existing download takes over from the new one.
    QList<AbstractDownloadOption> options;

    bool operator==(const AbstractDownloadMergeOptions &) const = default;
};

QVariantHash toVariantHash(const AbstractDownloadMergeOptions &mergeOptions);
AbstractDownloadMergeOptions toDownloadMergeOptions(const QVariantHash &hash);
QList<AbstractDownloadOption> toDownloadOptions(const QVariantList &list);
