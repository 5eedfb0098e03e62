#include "logcapture.h"
#include "multithreadedsqldatabasemanager.h"
#include "qtappsettingssqltable.h"
#include "sqlbusywait.h"
#include "sqldatabasemanager.h"

#include <QSignalSpy>
#include <QTest>

#include <thread>

using Table = QHash<QString, QString>;

class TestSqlTableManager : public QObject {
    Q_OBJECT
    std::unique_ptr<QTemporaryDir> m_dir;
    QString m_path;
    QSharedPointer<MultiThreadedSqlDatabaseManager> m_db;

    QVariant query(const QString &sql) const
    {
        QSqlQuery query = m_db->createQuery(sql);
        return query.exec() && query.next() ? query.value(0) : QVariant(query.lastError().text());
    }

private Q_SLOTS:
    void init()
    {
        QTest::failOnWarning(QRegularExpression(u"."_qs));
        m_db.reset();
        m_dir = std::make_unique<QTemporaryDir>();
        m_path = m_dir->filePath(u"new folder/db.sqlite"_qs);
        m_db = QSharedPointer<MultiThreadedSqlDatabaseManager>::create(m_path, QString());
    }

    void createsTheTable()
    {
        m_db->closeDatabase();
        QVERIFY(!QFile::exists(m_path));
        for (int round = 0; round < 2; ++round)
            QVERIFY(!QtAppSettingsSqlTable(m_db).setupError().isValid());
        QCOMPARE(query(u"SELECT sql FROM sqlite_master"_qs),
                 u"CREATE TABLE Settings (Name TEXT, Value TEXT, PRIMARY KEY (Name))"_qs);
        QCOMPARE(query(u"PRAGMA journal_mode"_qs), u"wal"_qs);
        QCOMPARE(m_db->database().connectOptions(), u"PRAGMA journal_mode=WAL;");
        QCOMPARE(QFile::permissions(m_path) & (QFile::ReadGroup | QFile::ReadOther), 0);
    }

    void addsMissingColumns()
    {
        query(u"CREATE TABLE Settings (Name TEXT, Later INT, PRIMARY KEY (Name))"_qs);
        query(u"INSERT INTO Settings (Name) VALUES ('a')"_qs);
        QtAppSettingsSqlTable table(m_db);
        QCOMPARE(SqlTableManager::tableColumns(*m_db, u"Settings"_qs),
                 (QStringList{u"Name"_qs, u"Later"_qs, u"Value"_qs}));
        QCOMPARE(table.readAll(), Table());
        QVERIFY(table.write(u"a"_qs, u"1"_qs));
        QCOMPARE(table.readAll(), (Table{{u"a"_qs, u"1"_qs}}));
        QVERIFY(table.addTableColumn(u"Extra"_qs, u"INT"_qs, 7));
        QCOMPARE(query(u"SELECT Extra FROM Settings"_qs), 7);
    }

    void writesAndRemoves()
    {
        QtAppSettingsSqlTable table(m_db);
        const QSignalSpy changed(m_db.data(), &AbstractSqlDatabaseManager::databaseChanged);
        const QString odd = u"it's; \"2\" – ü🎉"_qs;
        QVERIFY(table.write(u"a"_qs, u"1"_qs) && table.write(u"a"_qs, odd));
        QVERIFY(table.write({}, {}) && table.write({}, {}) && table.write(u"A"_qs, u"3"_qs));
        QCOMPARE(table.readAll(), (Table{{u"a"_qs, odd}, {u""_qs, u""_qs}, {u"A"_qs, u"3"_qs}}));
        QVERIFY(table.removeRecordWithValues({{u"Name"_qs, u"A"_qs}, {u"Value"_qs, u"no"_qs}}));
        QVERIFY(table.removeRecordWithValues({{u"Name"_qs, u"A"_qs}, {u"Value"_qs, u"3"_qs}}));
        QVERIFY(table.remove({}));
        QCOMPARE(table.readAll(), (Table{{u"a"_qs, odd}}));
        QVERIFY(!table.replaceRecord({{u"Nope"_qs, 1}}));
        QVERIFY(table.lastError().text().contains(u"no column named Nope"));
        QVERIFY(!table.removeRecordWithValues({}));
        QVERIFY(!table.tableIterator({u"Nope"_qs}).isActive());
        QCOMPARE(changed.size(), 8);
        query(u"DROP TABLE Settings"_qs);
        QCOMPARE(table.readAll(), Table());
        QVERIFY(table.lastError().text().contains(u"no such table"));
        m_db->closeDatabase();
        QVERIFY(!table.makeSureAllColumnsExists());
    }

    void transactions()
    {
        QtAppSettingsSqlTable table(m_db);
        QVERIFY(table.beginTransaction() && table.write(u"a"_qs, u"1"_qs));
        QVERIFY(!table.beginTransaction() && table.endTransaction(false));
        QCOMPARE(table.readAll(), Table());
        // Would deadlock if the failed one had kept the lock.
        std::thread([this] { m_db->lock(), m_db->unlock(); }).join();
    }

    void tellsWhatIsBroken()
    {
        const LogCapture log;
        query(u"CREATE TABLE T (A)"_qs);
        query(u"INSERT INTO T VALUES (NULL), (NULL)"_qs);
        query(u"PRAGMA writable_schema=ON"_qs);
        QVERIFY(!m_db->checkIfCorrupt());
        query(u"UPDATE sqlite_master SET sql='CREATE TABLE T (A NOT NULL)'"_qs);
        m_db->closeDatabase();
        QVERIFY(m_db->openDatabase() && m_db->checkIfCorrupt());
        m_db->closeDatabase();
        QFile file(m_path);
        QVERIFY(file.open(QIODevice::ReadWrite) && file.write(QByteArray(100, 'x')) == 100);
        file.close();
        QVERIFY(m_db->openDatabase() && m_db->checkIfCorrupt());
        const QString line =
            u"[AbstractSqlDatabaseManager]: WARNING: DB is corrupted. ERROR #%1"_qs;
        QCOMPARE(log.texts(),
                 (QStringList{line.arg(u"3: NULL value in T.A"), line.arg(u"4: NULL value in T.A"),
                              line.arg(u"1: file is not a database")}));
    }

    /// A database that another connection has locked is not corrupt.
    void cannotCheckWhatIsLocked()
    {
        const LogCapture log;
        query(u"PRAGMA journal_mode=DELETE"_qs);
        query(u"CREATE TABLE T (A)"_qs);
        query(u"BEGIN EXCLUSIVE"_qs);
        SqlDatabaseManager other(m_path, u"other"_qs, QSharedPointer<QRecursiveMutex>::create());
        QVERIFY(other.openDatabase() && other.openDatabase() && !other.checkIfCorrupt());
        QCOMPARE(log.texts().constLast(),
                 u"[AbstractSqlDatabaseManager]: cannot check the DB: database is locked"_qs);
        query(u"COMMIT"_qs);
    }

    /// A connection of that name that exists already is used, and left open.
    void usesAnExistingConnection()
    {
        const LogCapture log(2);
        const QString name = u"existing"_qs;
        QDir(m_dir->path()).mkdir(u"new folder"_qs);
        {
            QSqlDatabase existing = QSqlDatabase::addDatabase(u"QSQLITE"_qs, name);
            existing.setDatabaseName(m_path);
        }
        const auto mutex = QSharedPointer<QRecursiveMutex>::create();
        for (int round = 0; round < 2; ++round) {
            SqlDatabaseManager db(m_path, name, mutex);
            QVERIFY(db.openDatabase() && db.openDatabase());
            QSqlQuery timeout = db.createQuery(u"PRAGMA busy_timeout"_qs);
            QVERIFY(timeout.exec() && timeout.next());
            QCOMPARE(timeout.value(0), int(sqlBusyTimeout.count()));
            QVERIFY(!SqlDatabaseManager(m_path + u'x', name, mutex).openDatabase());
        }
        QVERIFY(QSqlDatabase::database(name, false).isOpen());
        QSqlDatabase::removeDatabase(name);
        QCOMPARE(log.texts().filter(u"no write-ahead log"_qs), QStringList());
        m_db->closeDatabase();
        QCOMPARE(QSqlDatabase::connectionNames(), QStringList());
    }

    void connectionsEndWithTheirThreads()
    {
        query(u"CREATE TABLE T (A)"_qs);
        const std::unique_ptr<QThread> thread(QThread::create([this] {
            QCOMPARE(query(u"SELECT name FROM sqlite_master"_qs), u"T"_qs);
            QCOMPARE(QSqlDatabase::connectionNames().size(), 2);
        }));
        thread->start();
        QVERIFY(thread->wait());
        QCOMPARE(QSqlDatabase::connectionNames().size(), 1);
        m_db.reset();
        QCOMPARE(QSqlDatabase::connectionNames(), QStringList());
    }
};

QTEST_GUILESS_MAIN(TestSqlTableManager)
#include "tst_sqltablemanager.moc"
