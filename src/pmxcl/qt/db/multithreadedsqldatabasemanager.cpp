#include "multithreadedsqldatabasemanager.h"

#include "assertionlog.h"
#include "qtobjectfactory.h"
#include "sqldatabasemanager.h"
#include "sqlfailurelog.h"

#include <QMutexLocker>
#include <QThread>

#include <utility>

MultiThreadedSqlDatabaseManager::MultiThreadedSqlDatabaseManager(QString filePath,
                                                                 QString connectionName,
                                                                 QObject *parent)
    : AbstractSqlDatabaseManager(parent), m_filePath(std::move(filePath)),
      m_connectionName(std::move(connectionName)),
      m_sharedMutex(QSharedPointer<QRecursiveMutex>::create())
{
}

QString MultiThreadedSqlDatabaseManager::thisThreadConnectionName() const
{
    return QStringLiteral("%1_%2").arg(
        m_connectionName, QString::number(reinterpret_cast<quintptr>(QThread::currentThread())));
}

QSharedPointer<AbstractSqlDatabaseManager>
MultiThreadedSqlDatabaseManager::thisThreadDbManager(bool create) const
{
    QThread *const thread = QThread::currentThread();
    const QMutexLocker locker(&m_mutex);
    if (const auto it = m_managers.constFind(thread); it != m_managers.constEnd() || !create)
        return it != m_managers.constEnd() ? *it : nullptr;
    const auto db =
        qtCreateObject<SqlDatabaseManager>(m_filePath, thisThreadConnectionName(), m_sharedMutex);
    if (!db->openDatabase() && SqlFailureLog::isNew(m_filePath, QStringLiteral("open")))
        checkOrLog(false, "db->openDatabase()");
    // Direct: a connection must be closed on its own thread, before that ends.
    connect(thread, &QThread::finished, this, &MultiThreadedSqlDatabaseManager::onThreadFinished,
            static_cast<Qt::ConnectionType>(Qt::DirectConnection | Qt::UniqueConnection));
    m_managers.insert(thread, db);
    return db;
}

bool MultiThreadedSqlDatabaseManager::openDatabase()
{
    return thisThreadDbManager()->openDatabase();
}

void MultiThreadedSqlDatabaseManager::closeDatabase()
{
    if (const auto db = thisThreadDbManager(false))
        db->closeDatabase();
}

bool MultiThreadedSqlDatabaseManager::databaseOpened() const
{
    return thisThreadDbManager()->databaseOpened();
}

QSqlQuery MultiThreadedSqlDatabaseManager::createQuery(const QString &sql)
{
    return thisThreadDbManager()->createQuery(sql);
}

QSqlDatabase MultiThreadedSqlDatabaseManager::database()
{
    return thisThreadDbManager()->database();
}

void MultiThreadedSqlDatabaseManager::onThreadFinished()
{
    QSharedPointer<AbstractSqlDatabaseManager> finished;
    {
        const QMutexLocker locker(&m_mutex);
        finished = m_managers.take(QThread::currentThread());
    }
}
