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

    /// Compares what the descriptions say.
    bool operator==(const AbstractNewDownloadRequest &other) const;
};

/// Without a description the hash is empty.
QVariantHash toVariantHash(const AbstractNewDownloadRequest &request);
/// The description is never null: of an empty hash, it is one of the default values.
AbstractNewDownloadRequest toNewDownloadRequest(const QVariantHash &hash);

/// Encodes downloads one after another, so that many of them never stand in memory as records.
class NewDownloadsEncoder {
public:
    NewDownloadsEncoder();
    ~NewDownloadsEncoder();
    Q_DISABLE_COPY_MOVE(NewDownloadsEncoder)

    void add(const AbstractNewDownloadRequest &download);
    /// What was added: stands for the list of the variant hashes.
    const QtEncodedVariantList &downloads() const { return m_downloads; }

private:
    const std::unique_ptr<RecordsStreamContext> m_context;
    QtVariantStreamWriter m_writer;
    QtEncodedVariantList m_downloads;
};
