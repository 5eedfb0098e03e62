#pragma once

#include "abstractdownloadmergeoptions.h"

#include <QVariantHash>

/// What becomes of a new download whose resource is downloaded already.
struct AbstractDownloadMergeTaskOptions {
    AbstractDownloadMergeOptions mo;
    /// Add it beside the existing one.
    bool dontMergeJustAddNew = false;
    /// Download the existing one again, or go on with it.
    bool restart = false;
    bool start = false;

    bool operator==(const AbstractDownloadMergeTaskOptions &) const = default;
};

QVariantHash toVariantHash(const AbstractDownloadMergeTaskOptions &taskOptions);
AbstractDownloadMergeTaskOptions toDownloadMergeTaskOptions(const QVariantHash &hash);
