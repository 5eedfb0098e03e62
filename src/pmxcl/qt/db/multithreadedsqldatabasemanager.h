#pragma once

#include "abstractsqldatabasemanager.h"

#include <QHash>
#include <QMutex>
#include <QRecursiveMutex>
#include <QSharedPointer>

class QThread;

/**
 * A database that any thread can use: each has its own connection, opened on first use and closed
 * when the thread ends. Writes of all threads are serialized.
 *
 * Must outlive its use by other threads.
 */
class MultiThreadedSqlDatabaseManager : public AbstractSqlDatabaseManager {
    Q_OBJECT
public:
    /// The connection name is the prefix of the names of all threads' connections; two managers
    /// with the same one cannot use different files at the same time.
    MultiThreadedSqlDatabaseManager(QString filePath, QString connectionName,
                                    QObject *parent = nullptr);

    /// "<connection name>_<address of the QThread, decimal>".
    QString thisThreadConnectionName() const;
    /// The manager of the current thread's connection. If there is none, it is created and opened,
    /// unless create is false: then null. It is returned even if it could not be opened.
    QSharedPointer<AbstractSqlDatabaseManager> thisThreadDbManager(bool create = true) const;

    QString databaseFilePath() const override { return m_filePath; }
    bool canBeUsedInCurrentThread() const override { return true; }
    void lock() override { m_sharedMutex->lock(); }
    void unlock() override { m_sharedMutex->unlock(); }
    bool openDatabase() override;
    /// The current thread's connection only.
    void closeDatabase() override;
    bool databaseOpened() const override;
    QSqlQuery createQuery(const QString &sql) override;
    QSqlDatabase database() override;

private Q_SLOTS:
    /// Called on the thread that ends.
    void onThreadFinished();

private:
    const QString m_filePath;
    const QString m_connectionName;
    mutable QMutex m_mutex;
    mutable QHash<QThread *, QSharedPointer<AbstractSqlDatabaseManager>> m_managers;
    const QSharedPointer<QRecursiveMutex> m_sharedMutex;
};
