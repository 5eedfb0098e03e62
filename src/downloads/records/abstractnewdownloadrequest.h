#pragma once

#include "abstractdownloadpersistentinfo.h"

#include <QVariantHash>

#include <memory>

/// One download to be added. Copies share the description.
struct AbstractNewDownloadRequest {
    std::shared_ptr<AbstractDownloadPersistentInfo> info;

    /// Compares what the descriptions say.
    bool operator==(const AbstractNewDownloadRequest &other) const;
};

/// Without a description the hash is empty.
QVariantHash toVariantHash(const AbstractNewDownloadRequest &request);
/// The description is never null: of an empty hash, it is one of the default values.
AbstractNewDownloadRequest toNewDownloadRequest(const QVariantHash &hash);
