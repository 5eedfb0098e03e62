#pragma once

#include "abstractsqldatabasemanager.h"

#include <QByteArray>
#include <QRecursiveMutex>
#include <QSharedPointer>

class QThread;

/**
 * One named connection to a database file. It belongs to the thread that opened it.
 *
 * The file is created with mode 0600. Write-ahead logging is used if possible, so that other
 * processes can read while one writes; on file systems without support for it, a rollback journal.
 * SqlBusyWait describes the waits while another process has locked the database.
 */
class SqlDatabaseManager : public AbstractSqlDatabaseManager {
    Q_OBJECT
public:
    /// The mutex is shared by all connections whose writes are serialized.
    SqlDatabaseManager(QString filePath, const QString &connectionName,
                       QSharedPointer<QRecursiveMutex> mutex, QObject *parent = nullptr);
    /// Closes the connection.
    ~SqlDatabaseManager() override;

    QString dbConnectionName() const;

    QString databaseFilePath() const override { return m_filePath; }
    bool canBeUsedInCurrentThread() const override;
    void lock() override { m_mutex->lock(); }
    void unlock() override { m_mutex->unlock(); }
    /// Uses an existing connection of this name; false if it is to another file.
    bool openDatabase() override;
    /// A connection that this object did not open stays open.
    void closeDatabase() override;
    bool databaseOpened() const override { return m_db.isOpen(); }
    QSqlQuery createQuery(const QString &sql) override;
    QSqlDatabase database() override { return m_db; }

private:
    bool takeConnection();
    void addConnection();
    void useWriteAheadLog();

    const QString m_filePath;
    const QByteArray m_connectionName;
    const QSharedPointer<QRecursiveMutex> m_mutex;
    QThread *m_thread = nullptr;
    bool m_connectionAdded = false;
    QSqlDatabase m_db;
};
