#pragma once

#include "abstractdownloadmergeoptions.h"

#include <QVariantHash>

/// What to do with a new download of a resource that is already being downloaded.
struct AbstractDownloadMergeTaskOptions {
    AbstractDownloadMergeOptions mo;
    /// Add it beside the existing one.
    bool dontMergeJustAddNew = false;
    /// Download the existing one again, or resume it.
    bool restart = false;
    bool start = false;

    bool operator==(const AbstractDownloadMergeTaskOptions &) const = default;
};

QVariantHash toVariantHash(const AbstractDownloadMergeTaskOptions &taskOptions);
AbstractDownloadMergeTaskOptions toDownloadMergeTaskOptions(const QVariantHash &hash);
