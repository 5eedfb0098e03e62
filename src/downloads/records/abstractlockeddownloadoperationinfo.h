#pragma once

#include "abstracterror.h"

#include <QDateTime>
#include <QVariantHash>

/// An operation that keeps a download locked while it runs, such as moving its files.
struct AbstractLockedDownloadOperationInfo {
    bool running = false;
    /// In percent: of the step being done and of all steps.
    int currentProgress = 0;
    int totalProgress = 0;
    /// How the operation failed when it last did, and when.
    AbstractError error;
    QDateTime errorTime;

    bool operator==(const AbstractLockedDownloadOperationInfo &) const = default;
};

QVariantHash toVariantHash(const AbstractLockedDownloadOperationInfo &operation);
AbstractLockedDownloadOperationInfo toLockedDownloadOperationInfo(const QVariantHash &hash);
