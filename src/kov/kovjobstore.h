#pragma once

#include "kovjob.h"

#include <QList>
#include <QSharedPointer>
#include <QString>

#include <memory>
#include <optional>

class AbstractSqlDatabaseManager;
class KovJobsTable;
class KovRequestsTable;

/**
 * The list of downloads on the disk, in a database that only its user can read.
 *
 * Two tables: "Jobs", whose small rows are updated each second, and "Requests", which holds cookies
 * and posted bodies; a job's row there is deleted when its file is complete. Changes are durable
 * when an operation returns true. Belongs to one thread.
 */
class KovJobStore {
public:
    /// Creates the file and its folder if necessary.
    explicit KovJobStore(const QString &filePath);
    ~KovJobStore();
    Q_DISABLE_COPY_MOVE(KovJobStore)

    /// In the order of their ids.
    QList<KovJob> load();
    /// In one transaction.
    bool add(const QList<std::pair<KovJob, KovDownloadRequest>> &jobs);
    /// Deletes the requests of finished jobs.
    bool save(const QList<KovJob> &jobs);
    bool saveRequest(qint64 id, const KovDownloadRequest &request);
    /// Nothing when it was deleted or cannot be read.
    std::optional<KovDownloadRequest> request(qint64 id);
    bool remove(qint64 id);

    /// Why the last operation failed.
    QString errorString() const;

private:
    template <typename Write> bool inTransaction(Write write);

    const QSharedPointer<AbstractSqlDatabaseManager> m_db;
    std::unique_ptr<KovJobsTable> m_jobs;
    std::unique_ptr<KovRequestsTable> m_requests;
    QString m_error;
};
