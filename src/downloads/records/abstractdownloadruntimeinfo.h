#pragma once

#include "abstractdownloadenums.h"
#include "abstractlivedownloadruntimeinfo.h"
#include "abstractlockeddownloadoperationinfo.h"

#include <QList>
#include <QString>
#include <QVariantHash>

/// The state of a download that is not stored.
struct AbstractDownloadRunTimeInfo {
    AbstractLiveDownloadRunTimeInfo live;
    quint32 flags = 0;
    /// Why the download cannot be changed now; 0 if it can.
    int lockReason = 0;
    /// The operation that locks it.
    AbstractLockedDownloadOperationInfo loi;
    QList<AbstractFileType> allFilesTypes;
    /// How many reasons there are not to retry automatically after an error.
    int forbidAutoRetryCount = 0;
    /// The name of the disk to which the download is written.
    QString storageId;

    bool operator==(const AbstractDownloadRunTimeInfo &) const = default;
};

QVariantHash toVariantHash(const AbstractDownloadRunTimeInfo &info);
AbstractDownloadRunTimeInfo toDownloadRunTimeInfo(const QVariantHash &hash);
