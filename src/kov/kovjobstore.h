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
 * Two tables: "Jobs", whose small rows are written again each second, and "Requests", which holds
 * cookies and posted bodies and loses a job's row when the job has its file. What an operation
 * wrote is on the disk when it returns true. Belongs to one thread.
 */
class KovJobStore {
public:
    /// The file is made with its folder when it does not exist.
    explicit KovJobStore(const QString &filePath);
    ~KovJobStore();
    Q_DISABLE_COPY_MOVE(KovJobStore)

    /// In the order of their ids.
    QList<KovJob> load();
    /// All or none.
    bool add(const QList<std::pair<KovJob, KovDownloadRequest>> &jobs);
    /// Forgets the requests of those that are finished.
    bool save(const QList<KovJob> &jobs);
    bool saveRequest(qint64 id, const KovDownloadRequest &request);
    /// Nothing when it was forgotten or could not be read.
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
