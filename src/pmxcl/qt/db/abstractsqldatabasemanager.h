#pragma once

#include <QObject>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>

/// An SQLite database in a file, with the lock for its users.
class AbstractSqlDatabaseManager : public QObject {
    Q_OBJECT
public:
    explicit AbstractSqlDatabaseManager(QObject *parent = nullptr);

    virtual QString databaseFilePath() const = 0;
    virtual bool canBeUsedInCurrentThread() const = 0;
    /// Locks out the other users of this manager, on all threads. Recursive.
    virtual void lock() = 0;
    virtual void unlock() = 0;
    /// Creates the file and its folder if necessary. True if it is already open.
    virtual bool openDatabase() = 0;
    /// No query of this connection may be alive.
    virtual void closeDatabase() = 0;
    virtual bool databaseOpened() const = 0;
    /// A query on this manager's connection: prepared with the text, or empty if there is none.
    virtual QSqlQuery createQuery(const QString &sql) = 0;
    /// Executes a query of createQuery(), and waits while another process has locked the database.
    /// Unlike QSqlQuery::exec(), keeps the error of a query that could not be prepared.
    static bool executeQuery(QSqlQuery &query);
    /// The connection; must not outlive the manager, nor be used on another thread.
    virtual QSqlDatabase database() = 0;

    /// Called before and after writes; any thread.
    void notifyDatabaseAboutToChange();
    void notifyDatabaseChanged();

    /// Whether the file is corrupt; the reason is logged. Reads the whole file. A file that another
    /// process has locked cannot be checked, and does not count as corrupt.
    bool checkIfCorrupt();

Q_SIGNALS:
    void databaseAboutToChange();
    void databaseChanged();
};
