#pragma once

#include "abstractdownloadpersistentinfo.h"
#include "qtencodedvariantlist.h"
#include "qtvariantstreamwriter.h"

#include <QVariantHash>

#include <memory>

class RecordsStreamContext;

/// One download to be added. Copies share the description.
struct AbstractNewDownloadRequest {
    std::shared_ptr<AbstractDownloadPersistentInfo> info;

    /// Compares the descriptions by value.
    bool operator==(const AbstractNewDownloadRequest &other) const;
};

/// Without a description the hash is empty.
QVariantHash toVariantHash(const AbstractNewDownloadRequest &request);
/// The description is never null: for an empty hash, it has the default values.
AbstractNewDownloadRequest toNewDownloadRequest(const QVariantHash &hash);

/// Encodes downloads one after another, so that many of them are never in memory as records.
class NewDownloadsEncoder {
public:
    NewDownloadsEncoder();
    ~NewDownloadsEncoder();
    Q_DISABLE_COPY_MOVE(NewDownloadsEncoder)

    void add(const AbstractNewDownloadRequest &download);
    /// The added downloads, in place of the list of variant hashes.
    const QtEncodedVariantList &downloads() const { return m_downloads; }

private:
    const std::unique_ptr<RecordsStreamContext> m_context;
    QtVariantStreamWriter m_writer;
    QtEncodedVariantList m_downloads;
};
