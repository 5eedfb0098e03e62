#pragma once

#include <QObject>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>

/// An SQLite database in a file, and who may use it when.
class AbstractSqlDatabaseManager : public QObject {
    Q_OBJECT
public:
    explicit AbstractSqlDatabaseManager(QObject *parent = nullptr);

    virtual QString databaseFilePath() const = 0;
    virtual bool canBeUsedInCurrentThread() const = 0;
    /// Excludes the other users of this manager, on all threads. Recursive.
    virtual void lock() = 0;
    virtual void unlock() = 0;
    /// Creates the file and its folder if need be. True when it is open already.
    virtual bool openDatabase() = 0;
    /// No query of this connection may be alive.
    virtual void closeDatabase() = 0;
    virtual bool databaseOpened() const = 0;
    /// A query on this manager's connection: prepared with the text, or empty without one.
    virtual QSqlQuery createQuery(const QString &sql) = 0;
    /// Executes a query of createQuery(), and waits while another process has the database. Unlike
    /// QSqlQuery::exec(), keeps the reason why a query could not even be prepared.
    static bool executeQuery(QSqlQuery &query);
    /// The connection; never to be kept longer than the manager, nor given to another thread.
    virtual QSqlDatabase database() = 0;

    /// Called before and after writes; any thread.
    void notifyDatabaseAboutToChange();
    void notifyDatabaseChanged();

    /// Whether the file is broken; what is wrong with it is logged. Reads the whole file. One that
    /// another process holds cannot be checked, and does not count as broken.
    bool checkIfCorrupt();

Q_SIGNALS:
    void databaseAboutToChange();
    void databaseChanged();
};
