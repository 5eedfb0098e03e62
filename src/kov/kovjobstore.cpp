#include "kovjobstore.h"

#include "qtappdefaultlogger.h"
#include "sqldatabasemanager.h"
#include "sqleasytablemanager.h"

#include <QRecursiveMutex>

#include <algorithm>

namespace {

using Row = QList<std::pair<QString, QVariant>>;

QString idColumn() { return QStringLiteral("Id"); }

/// A null QString would become NULL, which differs from an empty text.
QVariant stored(const QByteArray &bytes) { return bytes.isNull() ? QByteArray("") : bytes; }
QVariant stored(const QString &text) { return text.isNull() ? QString(u""_qs) : text; }
QVariant stored(const QUrl &url) { return stored(url.toString(QUrl::FullyEncoded)); }
QVariant stored(const QDateTime &time) { return time.isValid() ? time.toMSecsSinceEpoch() : 0; }

QDateTime toTime(const QVariant &value)
{
    const qint64 milliseconds = value.toLongLong();
    return milliseconds == 0 ? QDateTime() : QDateTime::fromMSecsSinceEpoch(milliseconds);
}

QByteArray toLines(const QList<QNetworkCookie> &cookies)
{
    QByteArrayList lines;
    for (const QNetworkCookie &cookie : cookies)
        lines += cookie.toRawForm(QNetworkCookie::Full);
    return lines.join('\n');
}

QStringList columnNames(const QList<SqlTableManager::table_column> &columns)
{
    QStringList names;
    for (const SqlTableManager::table_column &column : columns)
        names += column.name;
    return names;
}

/// The columns after the id, in the order in which rows are written and read.
QList<SqlTableManager::table_column> columns(const QStringList &numbers, const QStringList &texts,
                                             const QStringList &bytes = {})
{
    QList<SqlTableManager::table_column> all{{idColumn(), QStringLiteral("INTEGER"), true}};
    for (const QString &name : numbers)
        all.append({name, QStringLiteral("INTEGER"), false});
    for (const QString &name : texts)
        all.append({name, QStringLiteral("TEXT"), false});
    for (const QString &name : bytes)
        all.append({name, QStringLiteral("BLOB"), false});
    return all;
}

Row row(const QStringList &names, const QVariantList &values)
{
    Row result;
    for (qsizetype i = 0; i < names.size(); ++i)
        result.emplace_back(names.at(i), values.at(i));
    return result;
}

} // namespace

class KovJobsTable : public SqlEasyTableManager<KovJobsTable> {
public:
    using SqlEasyTableManager::SqlEasyTableManager;

    static QString sqlTableName() { return QStringLiteral("Jobs"); }
    static QList<table_column> sqlTableColumns()
    {
        return columns({u"State"_qs, u"TotalBytes"_qs, u"Attempts"_qs, u"Added"_qs, u"Finished"_qs},
                       {u"Url"_qs, u"Error"_qs, u"Path"_qs, u"PartialPath"_qs, u"Ranges"_qs},
                       {u"ETag"_qs, u"LastModified"_qs});
    }

    bool write(const KovJob &job)
    {
        return replaceRecord(
            row(columnNames(sqlTableColumns()),
                {job.id, static_cast<int>(job.state), job.totalBytes, job.attempts,
                 stored(job.added), stored(job.finished), stored(job.url), stored(job.error),
                 stored(job.path), stored(job.partialPath), job.ranges.toText(),
                 stored(job.validators.etag), stored(job.validators.lastModified)}));
    }

    QList<KovJob> readAll()
    {
        QList<KovJob> jobs;
        QSqlQuery rows = tableIterator(columnNames(sqlTableColumns()));
        while (rows.isActive() && rows.next()) {
            int column = 0;
            const auto next = [&rows, &column] { return rows.value(column++); };
            KovJob job;
            job.id = next().toLongLong();
            job.state = static_cast<KovJob::State>(next().toInt());
            job.totalBytes = next().toLongLong();
            job.attempts = next().toInt();
            job.added = toTime(next());
            job.finished = toTime(next());
            job.url = QUrl(next().toString());
            job.error = next().toString();
            job.path = next().toString();
            job.partialPath = next().toString();
            job.ranges = KovRanges::fromText(next().toString());
            job.validators = {next().toByteArray(), next().toByteArray()};
            jobs.append(job);
        }
        return jobs;
    }
};

class KovRequestsTable : public SqlEasyTableManager<KovRequestsTable> {
public:
    using SqlEasyTableManager::SqlEasyTableManager;

    static QString sqlTableName() { return QStringLiteral("Requests"); }
    static QList<table_column> sqlTableColumns()
    {
        return columns({u"AnnouncedBytes"_qs, u"IsStream"_qs},
                       {u"Url"_qs, u"Referrer"_qs, u"UserAgent"_qs, u"SuggestedName"_qs},
                       {u"Cookies"_qs, u"PostData"_qs});
    }

    bool write(qint64 id, const KovDownloadRequest &request)
    {
        return replaceRecord(
            row(columnNames(sqlTableColumns()),
                {id, request.announcedBytes, request.isStream ? 1 : 0, stored(request.url),
                 stored(request.referrer), stored(request.userAgent), stored(request.suggestedName),
                 stored(toLines(request.cookies)), stored(request.postData)}));
    }

    std::optional<KovDownloadRequest> read(qint64 id)
    {
        QSqlQuery rows =
            tableIterator(columnNames(sqlTableColumns()),
                          QStringLiteral("%1 = %2").arg(idColumn(), QString::number(id)));
        if (!rows.isActive() || !rows.next())
            return std::nullopt;
        int column = 1;
        const auto next = [&rows, &column] { return rows.value(column++); };
        KovDownloadRequest request;
        request.announcedBytes = next().toLongLong();
        request.isStream = next().toInt() != 0;
        request.url = QUrl(next().toString());
        request.referrer = next().toString();
        request.userAgent = next().toString();
        request.suggestedName = next().toString();
        request.cookies = QNetworkCookie::parseCookies(next().toByteArray());
        request.postData = next().toByteArray();
        return request;
    }
};

QString stateName(KovJob::State state)
{
    switch (state) {
    case KovJob::State::Waiting:
        return QStringLiteral("waiting");
    case KovJob::State::Running:
        return QStringLiteral("running");
    case KovJob::State::Paused:
        return QStringLiteral("paused");
    case KovJob::State::Finished:
        return QStringLiteral("finished");
    case KovJob::State::Failed:
        return QStringLiteral("failed");
    }
    return {};
}

KovJobStore::KovJobStore(const QString &filePath)
    : m_db(QSharedPointer<SqlDatabaseManager>::create(filePath,
                                                      QStringLiteral("KovJobStore ") + filePath,
                                                      QSharedPointer<QRecursiveMutex>::create()))
{
    m_db->openDatabase();
    // Deleted data, such as cookies, is overwritten.
    QSqlQuery query = m_db->createQuery(QStringLiteral("PRAGMA secure_delete=ON"));
    AbstractSqlDatabaseManager::executeQuery(query);
    m_jobs = std::make_unique<KovJobsTable>(m_db);
    m_requests = std::make_unique<KovRequestsTable>(m_db);
}

KovJobStore::~KovJobStore() = default;

QList<KovJob> KovJobStore::load()
{
    QList<KovJob> jobs = m_jobs->readAll();
    std::sort(jobs.begin(), jobs.end(),
              [](const KovJob &a, const KovJob &b) { return a.id < b.id; });
    return jobs;
}

template <typename Write> bool KovJobStore::inTransaction(Write write)
{
    bool written = m_jobs->beginTransaction();
    if (written) {
        written = write();
        const QString reason = errorString();
        if (!m_jobs->endTransaction(written) || !written) {
            m_error = written ? m_jobs->lastError().text() : reason;
            written = false;
        }
    } else {
        m_error = m_jobs->lastError().text();
    }
    if (!written)
        logLine(1, QStringLiteral("[KovJobStore]: ERROR: %1").arg(m_error));
    return written;
}

bool KovJobStore::add(const QList<std::pair<KovJob, KovDownloadRequest>> &jobs)
{
    return inTransaction([this, &jobs] {
        return std::all_of(jobs.cbegin(), jobs.cend(), [this](const auto &job) {
            return m_jobs->write(job.first) && m_requests->write(job.first.id, job.second);
        });
    });
}

bool KovJobStore::save(const QList<KovJob> &jobs)
{
    return inTransaction([this, &jobs] {
        return std::all_of(jobs.cbegin(), jobs.cend(), [this](const KovJob &job) {
            return m_jobs->write(job)
                && (job.state != KovJob::State::Finished
                    || m_requests->removeRecordWithValues({{idColumn(), job.id}}));
        });
    });
}

bool KovJobStore::saveRequest(qint64 id, const KovDownloadRequest &request)
{
    return inTransaction([this, id, &request] { return m_requests->write(id, request); });
}

std::optional<KovDownloadRequest> KovJobStore::request(qint64 id) { return m_requests->read(id); }

bool KovJobStore::remove(qint64 id)
{
    return inTransaction([this, id] {
        return m_jobs->removeRecordWithValues({{idColumn(), id}})
            && m_requests->removeRecordWithValues({{idColumn(), id}});
    });
}

QString KovJobStore::errorString() const
{
    for (const SqlTableManager *table :
         std::initializer_list<const SqlTableManager *>{m_jobs.get(), m_requests.get()}) {
        if (table->lastError().isValid())
            return table->lastError().text();
    }
    return m_error;
}
