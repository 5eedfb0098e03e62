#include "sqldatabasemanager.h"

#include "assertionlog.h"
#include "qtappdefaultlogger.h"
#include "sqlbusywait.h"
#include "sqlfailurelog.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSqlError>
#include <QThread>

#include <utility>

namespace {

/// SQLite creates its files with the process's default permissions, but settings may contain
/// passwords. It takes an empty file for a new database, and its other files get the permissions of
/// that file.
void createPrivateFile(const QString &filePath)
{
    QDir().mkpath(QFileInfo(filePath).absolutePath());
    QFile file(filePath);
    // An existing file is not changed. If this fails, opening the database fails, too, with the
    // reason.
    file.open(QIODevice::WriteOnly | QIODevice::NewOnly, QFile::ReadOwner | QFile::WriteOwner);
}

} // namespace

SqlDatabaseManager::SqlDatabaseManager(QString filePath, const QString &connectionName,
                                       QSharedPointer<QRecursiveMutex> mutex, QObject *parent)
    : AbstractSqlDatabaseManager(parent), m_filePath(std::move(filePath)),
      m_connectionName(connectionName.toUtf8()), m_mutex(std::move(mutex))
{
}

SqlDatabaseManager::~SqlDatabaseManager() { SqlDatabaseManager::closeDatabase(); }

QString SqlDatabaseManager::dbConnectionName() const { return QString::fromUtf8(m_connectionName); }

bool SqlDatabaseManager::canBeUsedInCurrentThread() const
{
    return !m_thread || m_thread == QThread::currentThread();
}

bool SqlDatabaseManager::openDatabase()
{
    if (m_db.isOpen())
        return true;
    if (!checkOrLog(canBeUsedInCurrentThread(), "canBeUsedInCurrentThread()"))
        return false;
    if (!m_db.isValid() && !takeConnection())
        addConnection();
    if (!checkOrLog(m_db.databaseName() == m_filePath, "m_db.databaseName() == m_filePath")) {
        closeDatabase();
        return false;
    }
    m_thread = QThread::currentThread();
    if (m_db.isOpen())
        return true;
    createPrivateFile(m_filePath);
    if (!m_db.open())
        return false;
    createQuery(QStringLiteral("PRAGMA busy_timeout=%1").arg(sqlBusyTimeout.count())).exec();
    useWriteAheadLog();
    return true;
}

bool SqlDatabaseManager::takeConnection()
{
    m_db = QSqlDatabase::database(dbConnectionName(), false);
    return m_db.isValid();
}

void SqlDatabaseManager::addConnection()
{
    m_db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), dbConnectionName());
    m_db.setConnectOptions(QStringLiteral("PRAGMA journal_mode=WAL;"));
    m_db.setDatabaseName(m_filePath);
    m_connectionAdded = true;
}

void SqlDatabaseManager::useWriteAheadLog()
{
    // The driver ignores unknown connect options.
    QSqlQuery query = createQuery(QStringLiteral("PRAGMA journal_mode=WAL"));
    const QString mode = executeQuery(query) && query.next() ? query.value(0).toString()
                                                             : sqlFailureText(query.lastError());
    if (mode != u"wal")
        logLine(2, QStringLiteral("[SqlDatabaseManager]: no write-ahead log: %1").arg(mode));
}

void SqlDatabaseManager::closeDatabase()
{
    if (m_connectionAdded)
        m_db.close();
    m_db = QSqlDatabase();
    if (std::exchange(m_connectionAdded, false))
        QSqlDatabase::removeDatabase(dbConnectionName());
    m_thread = nullptr;
}

QSqlQuery SqlDatabaseManager::createQuery(const QString &sql)
{
    checkOrLog(canBeUsedInCurrentThread(), "canBeUsedInCurrentThread()");
    QSqlQuery query(m_db);
    if (!sql.isEmpty())
        retryWhileBusy([&query, &sql] {
            query.prepare(sql);
            return query.lastError();
        });
    return query;
}
