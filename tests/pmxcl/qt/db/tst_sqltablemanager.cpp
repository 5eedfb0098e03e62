#include "logcapture.h"
#include "multithreadedsqldatabasemanager.h"
#include "qtappsettingssqltable.h"
#include "sqldatabasemanager.h"

#include <QSignalSpy>
#include <QTest>

#include <thread>

using Rows = QHash<QString, QString>;

class TestSqlTableManager : public QObject {
    Q_OBJECT
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
        QCOMPARE(table.readAll(), Rows());
        QVERIFY(table.write(u"a"_qs, u"1"_qs));
        QCOMPARE(table.readAll(), (Rows{{u"a"_qs, u"1"_qs}}));

        QVERIFY(table.addTableColumn(u"Extra"_qs, u"INT"_qs, 7));
        QCOMPARE(query(u"SELECT Extra FROM Settings"_qs), 7);
    }

    void writesAndRemoves()
    {
        QtAppSettingsSqlTable table(m_db);
        const QSignalSpy about(m_db.data(), &AbstractSqlDatabaseManager::databaseAboutToChange);
        const QSignalSpy changed(m_db.data(), &AbstractSqlDatabaseManager::databaseChanged);
        const QString odd = u"it's; \"2\" – ü🎉"_qs;
        for (const QString &value : {u"1"_qs, odd})
            QVERIFY(table.write(u"a"_qs, value));
        for (int i = 0; i < 2; ++i)
            QVERIFY(table.write(QString(), QString()));
        QVERIFY(table.write(u"A"_qs, u"3"_qs));
        QCOMPARE(table.readAll(), (Rows{{u"a"_qs, odd}, {u""_qs, u""_qs}, {u"A"_qs, u"3"_qs}}));
        QCOMPARE(query(u"SELECT count(*) FROM Settings"_qs), 3);

        QSqlQuery found = table.tableIterator({u"Value"_qs, u"Name"_qs}, u"Name='A'"_qs);
        QCOMPARE(found.lastQuery(), u"SELECT Value, Name FROM Settings WHERE Name='A'");
        QVERIFY(found.next() && found.value(0) == u"3"_qs && !found.next());

        QVERIFY(table.removeRecordWithValues({{u"Name"_qs, u"A"_qs}, {u"Value"_qs, u"no"_qs}}));
        QCOMPARE(table.readAll().size(), 3);
        QVERIFY(table.removeRecordWithValues({{u"Name"_qs, u"A"_qs}, {u"Value"_qs, u"3"_qs}}));
        QVERIFY(table.remove(u""_qs));
        QCOMPARE(table.readAll(), (Rows{{u"a"_qs, odd}}));
        QVERIFY(table.clearTable());
        QCOMPARE(table.readAll(), Rows());
        QCOMPARE(about.size(), 9);
        QCOMPARE(changed.size(), 9);
    }

    void failures()
    {
        QtAppSettingsSqlTable table(m_db);
        QVERIFY(table.write(u"a"_qs, u"1"_qs));
        const QSignalSpy changed(m_db.data(), &AbstractSqlDatabaseManager::databaseChanged);
        QVERIFY(!table.replaceRecord({{u"Nope"_qs, 1}}));
        QVERIFY(table.lastError().text().contains(u"no column named Nope"));
        QVERIFY(!table.removeRecordWithValues({}));
        QVERIFY(!table.tableIterator({u"Nope"_qs}).isActive());
        QVERIFY(table.lastError().text().contains(u"no such column: Nope"));
        QVERIFY(!table.addTableColumn(u"Value"_qs, u"TEXT"_qs, {}));
        QVERIFY(table.lastError().text().contains(u"duplicate column name"));
        QCOMPARE(changed.size(), 0);
        QCOMPARE(table.readAll().size(), 1);
        QVERIFY(!table.lastError().isValid());
    }

    void transactions()
    {
        QtAppSettingsSqlTable table(m_db);
        for (const bool commit : {false, true}) {
            QVERIFY(table.beginTransaction());
            QVERIFY(table.write(u"a"_qs, u"1"_qs));
            QVERIFY(table.endTransaction(commit));
            QCOMPARE(table.readAll().size(), commit ? 1 : 0);
        }
        QVERIFY(table.beginTransaction());
        QVERIFY(!table.beginTransaction());
        QVERIFY(table.lastError().isValid());
        QVERIFY(table.endTransaction(false));
        // Each of the two took the lock; if the failed one had kept it, this would stand still.
        std::thread([this] { m_db->lock(), m_db->unlock(); }).join();
    }

    void tellsWhatIsBroken()
    {
        const QString corrupt =
            u"[AbstractSqlDatabaseManager]: WARNING: DB is corrupted. ERROR #"_qs;
        const LogCapture log;
        for (const QString &sql :
             {u"CREATE TABLE T (A)"_qs, u"INSERT INTO T VALUES (NULL), (NULL)"_qs,
              u"PRAGMA writable_schema=ON"_qs})
            query(sql);
        QVERIFY(!m_db->checkIfCorrupt());
        QCOMPARE(log.texts(), QStringList());

        query(u"UPDATE sqlite_master SET sql='CREATE TABLE T (A NOT NULL)'"_qs);
        m_db->closeDatabase();
        QVERIFY(m_db->openDatabase() && m_db->checkIfCorrupt());
        m_db->closeDatabase();
        QFile file(m_path);
        QVERIFY(file.open(QIODevice::ReadWrite) && file.write(QByteArray(100, 'x')) == 100);
        file.close();
        QVERIFY(m_db->openDatabase() && m_db->checkIfCorrupt());
        QCOMPARE(
            log.texts(),
            (QStringList{corrupt + u"3: NULL value in T.A"_qs, corrupt + u"4: NULL value in T.A"_qs,
                         corrupt + u"1: file is not a database Unable to execute statement"_qs}));
    }

    void connections()
    {
        const auto mutex = QSharedPointer<QRecursiveMutex>::create();
        SqlDatabaseManager first(m_path, u"größe"_qs, mutex);
        QVERIFY(first.canBeUsedInCurrentThread() && !first.databaseOpened());
        QVERIFY(first.openDatabase() && first.openDatabase());
        {
            SqlDatabaseManager sharing(m_path, u"größe"_qs, mutex);
            QVERIFY(sharing.openDatabase());
            query(sharing, u"CREATE TABLE T (A)"_qs);
        }
        QCOMPARE(query(first, u"SELECT name FROM sqlite_master"_qs), u"T"_qs);

        const LogCapture log;
        SqlDatabaseManager toAnotherFile(m_path + u'2', u"größe"_qs, mutex);
        QVERIFY(!toAnotherFile.openDatabase());
        QCOMPARE(log.texts().size(), 1);
        std::thread([&first] { QVERIFY(!first.canBeUsedInCurrentThread()); }).join();
        first.closeDatabase();
        QVERIFY(!QSqlDatabase::contains(u"größe"_qs) && !first.databaseOpened());
    }

    void connectionsEndWithTheirThreads()
    {
        QVERIFY(m_db->openDatabase());
        const QStringList own{
            u"_%1"_qs.arg(QString::number(reinterpret_cast<quintptr>(QThread::currentThread())))};
        QCOMPARE(QSqlDatabase::connectionNames(), own);
        query(u"CREATE TABLE T (A)"_qs);
        const auto use = [db = m_db.data()] {
            QVERIFY(db->canBeUsedInCurrentThread() && db->databaseOpened());
            QCOMPARE(query(*db, u"SELECT name FROM sqlite_master"_qs), u"T"_qs);
            QCOMPARE(QSqlDatabase::connectionNames().size(), 2);
        };
        std::thread(use).join();
        QTRY_COMPARE(QSqlDatabase::connectionNames(), own);
        for (int round = 0; round < 2; ++round) {
            const std::unique_ptr<QThread> thread(QThread::create(use));
            thread->start();
            QVERIFY(thread->wait());
            QCOMPARE(QSqlDatabase::connectionNames(), own);
        }
        m_db.reset();
        QCOMPARE(QSqlDatabase::connectionNames(), QStringList());
    }

private:
    QVariant query(const QString &sql) { return query(*m_db, sql); }

    static QVariant query(AbstractSqlDatabaseManager &db, const QString &sql)
    {
        QSqlQuery query = db.createQuery(sql);
        return query.exec() && query.next() ? query.value(0) : QVariant(query.lastError().text());
    }

    std::unique_ptr<QTemporaryDir> m_dir;
    QString m_path;
    QSharedPointer<MultiThreadedSqlDatabaseManager> m_db;
};

QTEST_GUILESS_MAIN(TestSqlTableManager)
#include "tst_sqltablemanager.moc"
