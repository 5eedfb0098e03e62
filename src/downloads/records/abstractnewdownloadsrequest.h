#pragma once

#include "abstractdownloadenums.h"
#include "abstractnewdownloadrequest.h"

#include <QBitArray>
#include <QList>
#include <QVariant>
#include <QVariantHash>

/// Downloads that are handed over together.
struct AbstractNewDownloadsRequest {
    QList<AbstractNewDownloadRequest> downloads;
    /// One bit per download: whether it is preselected when the user is asked.
    QBitArray selectedDownloads;
    int flags = 0;
    AbstractNewDownloadsRequestSource source = AbstractNewDownloadsRequestSource::Unknown;
    AbstractDownloadType preferredDownloadType = AbstractDownloadType::Any;

    bool operator==(const AbstractNewDownloadsRequest &) const = default;
};

QVariantHash toVariantHash(const AbstractNewDownloadsRequest &request);
/// A download that has no bit in the hash is selected.
AbstractNewDownloadsRequest toNewDownloadsRequest(const QVariantHash &hash);
/// From a QBitArray, or from a QByteArray with a byte per bit; anything else has no bits.
QBitArray toBitArray(const QVariant &variant);
