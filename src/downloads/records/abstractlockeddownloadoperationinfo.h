#pragma once

#include "abstracterror.h"

#include <QDateTime>
#include <QVariantHash>

/// An operation that keeps a download locked while it runs, such as moving its files.
struct AbstractLockedDownloadOperationInfo {
    bool running = false;
    /// In percent: of the current step, and of all steps.
    int currentProgress = 0;
    int totalProgress = 0;
    /// The operation's last failure, and when it was.
    AbstractError error;
    QDateTime errorTime;

    bool operator==(const AbstractLockedDownloadOperationInfo &) const = default;
};

QVariantHash toVariantHash(const AbstractLockedDownloadOperationInfo &operation);
AbstractLockedDownloadOperationInfo toLockedDownloadOperationInfo(const QVariantHash &hash);
