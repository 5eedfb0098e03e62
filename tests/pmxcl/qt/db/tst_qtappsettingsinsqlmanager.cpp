#include "logcapture.h"
#include "multithreadedsqldatabasemanager.h"
#include "qtappsettingsinsqlmanager.h"
#include "sqldatabasemanager.h"
#include "tmpfsmount.h"

#include <QElapsedTimer>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <optional>

using Values = QtAppAbstractSettingsManager::Values;

class TestQtAppSettingsInSqlManager : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void mirrorsEveryChange();
    void eightThreads();
    void databaseOfOneThread();
    void faults_data();
    void faults();
    void diskFillsUpAndEmpties();
    void lockedForLong();
    void refusedValue();

private:
    QSharedPointer<MultiThreadedSqlDatabaseManager> database() const;
    /// What a fresh manager reads.
    Values stored() const { return QtAppSettingsInSqlManager(database()).allValues(); }

    std::unique_ptr<QTemporaryDir> m_dir;
    QString m_path;
};

void TestQtAppSettingsInSqlManager::init()
{
    QTest::failOnWarning(QRegularExpression(u"."_qs));
    m_dir = std::make_unique<QTemporaryDir>();
    m_path = m_dir->filePath(u"db.sqlite"_qs);
}

QSharedPointer<MultiThreadedSqlDatabaseManager> TestQtAppSettingsInSqlManager::database() const
{
    return QSharedPointer<MultiThreadedSqlDatabaseManager>::create(m_path, QString());
}

void TestQtAppSettingsInSqlManager::mirrorsEveryChange()
{
    const LogCapture log;
    {
        const auto db = database();
        QtAppSettingsInSqlManager settings(db);
        const QSignalSpy writes(db.data(), &MultiThreadedSqlDatabaseManager::databaseChanged);
        settings.setDefaultValue(u"a"_qs, u"1"_qs);
        settings.setValues({{u"a"_qs, u"1"_qs}}, u"me"_qs);
        QCOMPARE(writes.size(), 0);
        settings.setValues({{u"a"_qs, u"2"_qs}, {u"b"_qs, u""_qs}, {u"c"_qs, u"3"_qs}}, u"me"_qs);
        settings.setValues({{u"a"_qs, u"4"_qs}, {u"a"_qs, u"5"_qs}}, u"me"_qs);
    }
    // "b" is empty as it is without a value, so it was not changed.
    QCOMPARE(stored(), (Values{{u"a"_qs, u"5"_qs}, {u"c"_qs, u"3"_qs}}));
    {
        QtAppSettingsInSqlManager settings(database());
        settings.setAllValues({{u"d"_qs, u"6"_qs}, {u"e"_qs, u"7"_qs}}, u"me"_qs);
        settings.setValue(u"e"_qs, u""_qs);
    }
    QCOMPARE(stored(), (Values{{u"d"_qs, u"6"_qs}, {u"e"_qs, u""_qs}}));
    QtAppSettingsInSqlManager(database()).resetToDefaults(u"me"_qs);
    QCOMPARE(stored(), Values());
    QStringList expected;
    for (const int records : {0, 2, 2, 2, 2, 0})
        expected +=
            u"[QtAppSettingsInSqlManager]: got %1 records in the settings table"_qs.arg(records);
    QCOMPARE(log.texts(), expected);
}

void TestQtAppSettingsInSqlManager::eightThreads()
{
    const LogCapture log;
    const auto db = database();
    QtAppSettingsInSqlManager settings(db);
    std::vector<std::unique_ptr<QThread>> threads;
    threads.reserve(8);
    for (int number = 0; number < 8; ++number)
        threads.emplace_back(QThread::create([&settings, number] {
            const QString own = u"own%1"_qs.arg(number);
            for (int i = 0; i < 40; ++i) {
                const QString text = settings.value(u"shared"_qs) + own.right(1);
                settings.setValues({{own, text}, {u"shared"_qs, text}}, own);
                if (i % 10 == number)
                    settings.setAllValues({{u"shared"_qs, text}}, own);
            }
        }));
    for (const auto &thread : threads)
        thread->start();
    for (const auto &thread : threads)
        QVERIFY(thread->wait());
    QVERIFY(settings.value(u"shared"_qs).size() > 40);
    QCOMPARE(QSqlDatabase::connectionNames().size(), 1);
    const Values inMemory = settings.allValues();
    QCOMPARE(stored(), inMemory);
    QCOMPARE(log.texts().size(), 2);
}

/// Its connection cannot be used by other threads, so their changes come to it.
void TestQtAppSettingsInSqlManager::databaseOfOneThread()
{
    const auto db = QSharedPointer<SqlDatabaseManager>::create(
        m_path, u"one"_qs, QSharedPointer<QRecursiveMutex>::create());
    QVERIFY(db->openDatabase());
    QtAppSettingsInSqlManager settings(db);
    const QSignalSpy writes(db.data(), &SqlDatabaseManager::databaseChanged);
    const std::unique_ptr<QThread> thread(
        QThread::create([&settings] { settings.setValue(u"a"_qs, u"1"_qs); }));
    thread->start();
    QVERIFY(thread->wait());
    QCOMPARE(settings.value(u"a"_qs), u"1");
    QCOMPARE(writes.size(), 0);
    QTRY_COMPARE(writes.size(), 1);
    QCOMPARE(stored(), (Values{{u"a"_qs, u"1"_qs}}));
}

namespace {

/// What a fault is made of: the file before the fault, and the fault itself.
struct Fault {
    /// So many rows in a table; 0: no file.
    int rows = 0;
    bool older = false;
    int truncateTo = -1;
    QByteArray content = {};
    bool fileInPlaceOfFolder = false;
    bool readOnly = false;
    bool full = false;
};

} // namespace

void TestQtAppSettingsInSqlManager::faults_data()
{
    QTest::addColumn<Fault>("fault");
    QTest::addColumn<QString>("reason");
    QTest::addColumn<int>("logged");
    const QString cannotOpen = u"unable to open database file"_qs;
    QTest::newRow("not a database")
        << Fault{.content = QByteArray(5000, 'x')} << u"file is not a database"_qs << 1;
    QTest::newRow("truncated") << Fault{.rows = 1000, .truncateTo = 8192}
                               << u"database disk image is malformed"_qs << 1;
    QTest::newRow("truncated within the header")
        << Fault{.rows = 1, .truncateTo = 50} << u"database disk image is malformed"_qs << 1;
    QTest::newRow("folder cannot be made") << Fault{.fileInPlaceOfFolder = true} << cannotOpen << 2;
    QTest::newRow("read-only folder") << Fault{.readOnly = true} << cannotOpen << 2;
    QTest::newRow("read-only folder, older table")
        << Fault{.rows = 1, .older = true, .readOnly = true}
        << u"attempt to write a readonly database"_qs << 1;
    QTest::newRow("full disk") << Fault{.full = true} << u"database or disk is full"_qs << 1;
}

void TestQtAppSettingsInSqlManager::faults()
{
    QFETCH(const Fault, fault);
    QFETCH(const QString, reason);
    QFETCH(const int, logged);
    std::optional<TmpfsMount> mount;
    if (fault.readOnly || fault.full) {
        if (!mount.emplace(m_dir->path(), u"256k"_qs).isMounted())
            QSKIP("only root can mount a file system");
    }
    if (fault.rows > 0) {
        const auto db = database();
        const auto run = [&db](const QString &sql) {
            QSqlQuery query = db->createQuery(sql);
            return AbstractSqlDatabaseManager::executeQuery(query);
        };
        // The write-ahead log could not be read in a read-only folder.
        QVERIFY(run(u"PRAGMA journal_mode=DELETE"_qs));
        QVERIFY(run(u"CREATE TABLE Settings (Name TEXT%1, PRIMARY KEY (Name))"_qs.arg(
            fault.older ? u""_qs : u", Value TEXT"_qs)));
        QVERIFY(run(
            u"WITH RECURSIVE n(i) AS (VALUES (1) UNION ALL SELECT i + 1 FROM n WHERE i < %1) INSERT INTO Settings (Name) SELECT 'a name of a setting ' || i FROM n"_qs
                .arg(fault.rows)));
    }
    if (fault.fileInPlaceOfFolder)
        m_path += u"/db.sqlite"_qs;
    QFile file(m_dir->filePath(u"db.sqlite"_qs));
    if (!fault.readOnly) {
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(fault.truncateTo < 0 || file.resize(fault.truncateTo));
        file.write(fault.content);
        file.close();
    }
    QVERIFY(!fault.readOnly || mount->makeReadOnly());
    if (fault.full)
        mount->fillUp();
    const auto content = [&file] {
        QFile copy(file.fileName());
        return copy.open(QIODevice::ReadOnly) ? copy.readAll() : QByteArray();
    };
    const QByteArray before = content();

    const LogCapture log;
    for (int opening = 0; opening < 2; ++opening) {
        QtAppSettingsInSqlManager settings(database());
        settings.setDefaultValue(u"a"_qs, u"default"_qs);
        for (const QString &value : {u"1"_qs, u"2"_qs, u"3"_qs})
            settings.setValue(u"b"_qs, value);
        settings.setAllValues(settings.allValues(), {});
        QCOMPARE(settings.value(u"a"_qs), u"default");
        QCOMPARE(settings.value(u"b"_qs), u"3");
        settings.resetToDefaults({});
        QVERIFY(settings.value(u"b"_qs).isNull());
    }
    const QStringList lines = log.texts();
    QCOMPARE(lines.filter(reason).size(), 1);
    QCOMPARE(lines.filter(QRegularExpression(u"WARNING|ASSERTION"_qs)).size(), logged);
    QCOMPARE(content(), before);
}

void TestQtAppSettingsInSqlManager::diskFillsUpAndEmpties()
{
    const LogCapture log;
    const TmpfsMount mount(m_dir->path(), u"1m"_qs);
    if (!mount.isMounted())
        QSKIP("only root can mount a file system");
    const auto warnings = [&log] {
        return log.texts()
            .filter(u"WARNING: cannot store settings: database or disk is full"_qs)
            .size();
    };
    QString big(50'000, u'x');
    QtAppSettingsInSqlManager settings(database());
    settings.setAllValues({{u"a"_qs, u"1"_qs}, {u"b"_qs, u"1"_qs}}, {});
    for (int round = 1; round <= 2; ++round) {
        const Values before = stored();
        mount.fillUp();
        for (int i = 0; i < 3; ++i) {
            settings.setValues({{u"a"_qs, big += u'y'}, {u"c"_qs, big}}, {});
            settings.setAllValues({{u"a"_qs, big += u'z'}}, {});
        }
        QCOMPARE(settings.value(u"a"_qs), big);
        QCOMPARE(warnings(), round);
        QCOMPARE(stored(), before);
        mount.makeRoom();
        settings.setValue(u"b"_qs, QString::number(round));
        QCOMPARE(stored(), settings.allValues());
    }
}

/// Another process, stopped while it writes, is waited for once and not with every value.
void TestQtAppSettingsInSqlManager::lockedForLong()
{
    const LogCapture log;
    QtAppSettingsInSqlManager settings(database());
    SqlDatabaseManager other(m_path, u"other"_qs, QSharedPointer<QRecursiveMutex>::create());
    QVERIFY(other.openDatabase() && other.createQuery(u"BEGIN IMMEDIATE"_qs).exec());
    QtAppAbstractSettingsManager::ValuesList values;
    for (int i = 0; i < 20; ++i)
        values.emplace_back(QString::number(i), u"1"_qs);
    QElapsedTimer timer;
    timer.start();
    settings.setValues(values, {});
    QVERIFY(timer.hasExpired(1000) && !timer.hasExpired(15'000));
    QCOMPARE(log.texts().filter(u"WARNING: cannot store settings"_qs).size(), 1);
    QVERIFY(other.createQuery(u"COMMIT"_qs).exec());
    settings.setValue(u"0"_qs, u"2"_qs);
    QCOMPARE(stored(), settings.allValues());
}

/// The others of the same change are stored, and so is it when it is no longer refused.
void TestQtAppSettingsInSqlManager::refusedValue()
{
    const LogCapture log;
    const auto db = database();
    QtAppSettingsInSqlManager settings(db);
    const auto run = [&db](const QString &sql) { return db->createQuery(sql).exec(); };
    QVERIFY(run(u"CREATE TRIGGER t BEFORE INSERT ON Settings WHEN NEW.Value = 'bad' "
                "BEGIN SELECT RAISE(ABORT, 'refused'); END"_qs));
    QtAppAbstractSettingsManager::ValuesList values{{u"bad"_qs, u"bad"_qs}};
    for (int i = 0; i < 20; ++i)
        values.emplace_back(QString::number(i), u"good"_qs);
    settings.setValues(values, {});
    settings.setValue(u"0"_qs, u"better"_qs);
    Values expected = settings.allValues();
    QCOMPARE(expected.take(u"bad"_qs), u"bad");
    QCOMPARE(stored(), expected);
    QCOMPARE(log.texts().filter(u"refused"_qs).size(), 1);
    QVERIFY(log.texts()
                .filter(u"ASSERTION"_qs)
                .value(0)
                .startsWith(u"ASSERTION FAILED: m_table->write(p.first, p.second), "
                            "../../src/pmxcl/qt/db/qtappsettingsinsqlmanager,"));

    QVERIFY(run(u"DROP TRIGGER t"_qs));
    settings.setValue(u"0"_qs, u"best"_qs);
    QCOMPARE(stored(), settings.allValues());
}

QTEST_GUILESS_MAIN(TestQtAppSettingsInSqlManager)
#include "tst_qtappsettingsinsqlmanager.moc"
