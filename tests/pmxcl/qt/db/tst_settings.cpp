// Settings in memory, their copy in a database, and what happens to both when the database fails or
// other processes use it.

#include "logcapture.h"
#include "multithreadedsqldatabasemanager.h"
#include "qtappsettingsinsqlmanager.h"
#include "rows.h"
#include "sqldatabasemanager.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QSignalSpy>

#include <sched.h>
#include <sys/mount.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <vector>

using Values = QtAppAbstractSettingsManager::Values;
using ValuesList = QtAppAbstractSettingsManager::ValuesList;

namespace {

QSharedPointer<MultiThreadedSqlDatabaseManager> database(const QString &path)
{
    return QSharedPointer<MultiThreadedSqlDatabaseManager>::create(path, QString());
}

/// The values that a new manager reads.
Values stored(const QString &path) { return QtAppSettingsInSqlManager(database(path)).allValues(); }

/// From "name=value name=value".
ValuesList pairs(const QString &text)
{
    ValuesList values;
    for (const QString &pair : text.split(u' ', Qt::SkipEmptyParts))
        values.emplace_back(pair.section(u'=', 0, 0), pair.section(u'=', 1));
    return values;
}

/// The other process: rewrites all its settings again and again, with increasing numbers, and
/// reports when it is done. Returns 0 if everything was stored.
int writeSettings(const QString &path, const QString &prefix, int from, int until)
{
    QtAppSettingsInSqlManager settings(database(path));
    for (int number = from; number <= until; ++number) {
        ValuesList values;
        for (int key = 0; key < 50; ++key)
            values.emplace_back(prefix + QString::number(key), QString::number(number));
        settings.setValues(values, {});
        // On a slow machine the others may take longer than a change waits.
        while (settings.storeState() == QtAppSettingsInSqlManager::StoreState::Busy)
            settings.storeUnstored();
        std::printf("%d\n", number);
        std::fflush(stdout);
    }
    return settings.storeState() == QtAppSettingsInSqlManager::StoreState::InStep ? 0 : 1;
}

std::unique_ptr<QProcess> startWriter(const QString &path, const QString &prefix, int from,
                                      int until)
{
    auto writer = std::make_unique<QProcess>();
    writer->start(QCoreApplication::applicationFilePath(),
                  {path, prefix, QString::number(from), QString::number(until)});
    return writer;
}

/// A small file system in memory, mounted on a folder. Only this process sees it; needs root.
bool mountSmallDisk(const QString &folder)
{
    return ::unshare(CLONE_NEWNS) == 0
        && ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0
        && ::mount("tmpfs", QFile::encodeName(folder).constData(), "tmpfs", 0, "size=512k") == 0;
}

/// In the small disk of the folder.
void fillUp(const QString &folder)
{
    QFile filler(folder + u"/filler"_qs);
    if (filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        while (filler.write(QByteArray(4096, 'f')) > 0) { }
}

void makeTable(const QString &path, const QString &columns, int rows)
{
    const auto db = database(path);
    // The write-ahead log could not be read in a read-only folder.
    for (const QString &sql :
         {u"PRAGMA journal_mode=DELETE"_qs,
          u"CREATE TABLE Settings (%1, PRIMARY KEY (Name))"_qs.arg(columns),
          u"WITH RECURSIVE n(i) AS (VALUES (1) UNION ALL SELECT i + 1 FROM n WHERE i < %1) "
          "INSERT INTO Settings (Name) SELECT 'a name of a setting ' || i FROM n"_qs.arg(rows)})
        QVERIFY(db->createQuery(sql).exec());
}

/// Does something to the settings file.
using Damage = std::function<void(QString &path)>;

Damage truncate(int rows, int size)
{
    return [=](const QString &path) {
        makeTable(path, u"Name TEXT, Value TEXT"_qs, rows);
        QVERIFY(QFile::resize(path, size));
    };
}

void overwrite(const QString &path)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(QByteArray(5000, 'x')) == 5000);
}

} // namespace

class TestSettings : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        QTest::failOnWarning(QRegularExpression(u"."_qs));
        m_dir = std::make_unique<QTemporaryDir>();
        m_path = m_dir->filePath(u"db.sqlite"_qs);
    }
    void cleanup() { ::umount2(QFile::encodeName(m_dir->path()).constData(), MNT_DETACH); }

    void setValues()
    {
        QtAppSettingsInSqlManager settings(database(m_path));
        settings.setDefaultValue(u"d"_qs, u"1"_qs);
        settings.setValue(u"a"_qs, u"x"_qs);
        QString kept;
        connect(&settings, &QtAppSettingsInMemoryManager::valuesChanged, this,
                [&kept](const ValuesList &changed) {
                    for (const auto &[name, value] : changed)
                        kept += name + u'=' + value + u' ';
                });
        // An equal value is no change; of two changes of a key the last one counts.
        settings.setValues(pairs(u"a=x d=1 no="_qs), {});
        settings.setValues(pairs(u"a=x b=y"_qs), {});
        settings.setValues(pairs(u"a=1 a=2"_qs), {});
        QCOMPARE(kept, u"b=y a=1 a=2 "_qs);
        QCOMPARE(stored(m_path), (Values{{u"a"_qs, u"2"_qs}, {u"b"_qs, u"y"_qs}}));
    }

    /// The listener changes settings again; it would deadlock if it were called under the lock.
    void wholeTables()
    {
        QtAppSettingsInSqlManager settings(database(m_path));
        QStringList told;
        const auto listen = [&](const QString &source) {
            told += source;
            settings.setValue(u"n"_qs, QString::number(told.size()));
        };
        connect(&settings, &QtAppSettingsInMemoryManager::allValuesChanged, &settings, listen);
        connect(&settings, &QtAppSettingsInMemoryManager::settingsResetToDefaults, &settings,
                listen);
        settings.resetToDefaults(u"nothing to reset"_qs);
        settings.setAllDefaultValues({{u"a"_qs, u"3"_qs}});
        settings.setAllValues({{u"a"_qs, u"x"_qs}}, u"all"_qs);
        QCOMPARE(settings.allValues(), (Values{{u"a"_qs, u"x"_qs}, {u"n"_qs, u"1"_qs}}));
        settings.resetToDefaults(u"reset"_qs);
        QCOMPARE(settings.value(u"a"_qs), u"3");
        // Emitted even if nothing differs.
        settings.setAllValues(settings.allValues(), u"same again"_qs);
        QCOMPARE(told, (QStringList{u"all"_qs, u"reset"_qs, u"same again"_qs}));
        QCOMPARE(stored(m_path), (Values{{u"n"_qs, u"3"_qs}}));
    }

    void eightThreads()
    {
        QtAppSettingsInSqlManager settings(database(m_path));
        std::vector<std::unique_ptr<QThread>> threads;
        for (int number = 0; number < 8; ++number) {
            threads.emplace_back(QThread::create([&settings, number] {
                const QString own = u"own%1"_qs.arg(number);
                for (int i = 0; i < 40; ++i) {
                    const QString text = settings.value(u"shared"_qs) + own.right(1);
                    settings.setValues({{own, text}, {u"shared"_qs, text}}, own);
                    if (i % 10 == number)
                        settings.setAllValues({{u"shared"_qs, text}}, own);
                }
            }));
            threads.back()->start();
        }
        for (const auto &thread : threads)
            QVERIFY(thread->wait());
        QVERIFY(settings.value(u"shared"_qs).size() > 40);
        QCOMPARE(QSqlDatabase::connectionNames().size(), 1);
        QCOMPARE(stored(m_path), settings.allValues());
    }

    void threadThatCannotUseTheDatabase()
    {
        const LogCapture log;
        QtAppSettingsInSqlManager settings(QSharedPointer<SqlDatabaseManager>::create(
            m_path, u"single"_qs, QSharedPointer<QRecursiveMutex>::create()));
        const std::unique_ptr<QThread> thread(QThread::create([&settings] {
            settings.setValues({{u"a"_qs, u"1"_qs}}, {});
        }));
        thread->start();
        QVERIFY(thread->wait());
        QCoreApplication::sendPostedEvents();
        QCOMPARE(stored(m_path), (Values{{u"a"_qs, u"1"_qs}}));
        QCOMPARE(log.texts().filter(u"ASSERTION"_qs), QStringList());
    }

    void faults_data()
    {
        const Rows<Damage, QString, QString, int> row("damage", "disk", "reason", "logged");
        const QString malformed = u"database disk image is malformed"_qs;
        const Damage older = [](const QString &path) { makeTable(path, u"Name TEXT"_qs, 1); };
        const Damage fileForFolder = [](QString &path) {
            overwrite(path);
            path += u"/db.sqlite"_qs;
        };
        const Damage none = [](const QString &) {};
        row("not a database", overwrite, {}, u"ERROR: file is not a database"_qs, 2);
        row("truncated", truncate(1000, 8192), {}, u"ERROR #1: "_qs + malformed, 2);
        row("truncated within the header", truncate(1, 50), {}, u"ERROR #1: "_qs + malformed, 2);
        row("folder cannot be made", fileForFolder, {}, u"unable to open database file"_qs, 2);
        row("read-only folder", none, u"read-only"_qs, u"unable to open database file"_qs, 2);
        row("read-only folder, older table", older, u"read-only"_qs,
            u"attempt to write a readonly database"_qs, 1);
        row("full disk", none, u"full"_qs, u"database or disk is full"_qs, 1);
    }

    void faults()
    {
        QFETCH(const Damage, damage);
        QFETCH(const QString, disk);
        QFETCH(const QString, reason);
        const QString folder = m_dir->path();
        if (!disk.isEmpty() && !mountSmallDisk(folder))
            QSKIP("only root can mount a file system");
        const auto content = [path = m_path] {
            QFile file(path);
            return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        };
        damage(m_path);
        if (disk == u"full")
            fillUp(folder);
        else if (!disk.isEmpty())
            QCOMPARE(::mount(nullptr, QFile::encodeName(folder).constData(), nullptr,
                             MS_REMOUNT | MS_RDONLY, nullptr),
                     0);
        const QByteArray before = content();

        const LogCapture log;
        for (int opening = 0; opening < 2; ++opening) {
            QtAppSettingsInSqlManager settings(database(m_path));
            settings.setDefaultValue(u"a"_qs, u"default"_qs);
            for (const QString &value : {u"1"_qs, u"2"_qs, u"3"_qs})
                settings.setValue(u"b"_qs, value);
            settings.setAllValues(settings.allValues(), {});
            QCOMPARE(settings.value(u"a"_qs), u"default");
            QCOMPARE(settings.value(u"b"_qs), u"3");
            settings.resetToDefaults({});
            QVERIFY(settings.value(u"b"_qs).isNull());
        }
        QCOMPARE(log.texts().filter(reason).size(), 1);
        QCOMPARE(log.texts().filter(u"got 0 records in the settings table"_qs).size(), 2);
        QTEST(int(log.texts().filter(QRegularExpression(u"WARNING|ASSERTION"_qs)).size()),
              "logged");
        QCOMPARE(content(), before);
    }

    void diskFillsUpAndEmpties()
    {
        if (!mountSmallDisk(m_dir->path()))
            QSKIP("only root can mount a file system");
        const LogCapture log;
        QString big(50'000, u'x');
        QtAppSettingsInSqlManager settings(database(m_path));
        settings.setAllValues({{u"a"_qs, u"1"_qs}, {u"b"_qs, u"1"_qs}}, {});
        for (int round = 1; round <= 2; ++round) {
            const Values before = stored(m_path);
            fillUp(m_dir->path());
            for (int i = 0; i < 3; ++i) {
                settings.setValues({{u"a"_qs, big += u'y'}, {u"c"_qs, big}}, {});
                settings.setAllValues({{u"a"_qs, big += u'z'}}, {});
            }
            QCOMPARE(log.texts().filter(u"database or disk is full"_qs).size(), round);
            QCOMPARE(stored(m_path), before);
            QVERIFY(QFile::remove(m_dir->filePath(u"filler"_qs)));
            settings.setValue(u"b"_qs, QString::number(round));
            QCOMPARE(stored(m_path), settings.allValues());
        }
    }

    /// Waits for another process only once in all, and not at all the next time.
    void lockedForLong()
    {
        const LogCapture log;
        QtAppSettingsInSqlManager settings(database(m_path));
        SqlDatabaseManager other(m_path, u"other"_qs, QSharedPointer<QRecursiveMutex>::create());
        QVERIFY(other.openDatabase());
        // When it has been unlocked, the next lock is waited for again.
        for (int round = 1; round <= 2; ++round) {
            QVERIFY(other.createQuery(u"BEGIN IMMEDIATE"_qs).exec());
            ValuesList values;
            for (int i = 0; i < 20; ++i)
                values.emplace_back(QString::number(i), QString::number(round));
            QElapsedTimer timer;
            timer.start();
            settings.setValues(values, {});
            const qint64 first = timer.restart();
            settings.setValues(values, {});
            settings.setValue(u"0"_qs, u"3"_qs);
            if (round == 2)
                settings.setAllValues(settings.allValues(), {});
            QVERIFY2(first >= 450 && first < 4000 && timer.elapsed() < first,
                     qPrintable(QString::number(first)));
            using State = QtAppSettingsInSqlManager::StoreState;
            QCOMPARE(settings.storeState(), State::Busy);
            QCOMPARE(log.texts().filter(u"WARNING"_qs).size(), round);
            QVERIFY(other.createQuery(u"COMMIT"_qs).exec());
            settings.storeUnstored();
            QCOMPARE(settings.storeState(), State::InStep);
            QCOMPARE(stored(m_path), settings.allValues());
        }
    }

    /// The table becomes readable after settings were changed: all are kept, the changed ones with
    /// their new values; unless all were replaced.
    void readableLater()
    {
        const LogCapture log;
        for (const bool replaced : {false, true}) {
            init();
            const QString folder = m_dir->filePath(u"folder"_qs);
            overwrite(folder);
            m_path = folder + u"/db.sqlite"_qs;
            QtAppSettingsInSqlManager settings(database(m_path));
            QVERIFY(!settings.isRead());
            settings.setValue(u"a"_qs, u"new"_qs);
            if (replaced)
                settings.setAllValues(settings.allValues(), {});
            QVERIFY(QFile::remove(folder));
            const auto other = std::make_unique<QtAppSettingsInSqlManager>(database(m_path));
            other->setValues(pairs(u"a=old b=old"_qs), {});
            settings.storeUnstored();
            QCOMPARE(settings.allValues().size(), replaced ? 1 : 2);
            QCOMPARE(settings.value(u"a"_qs), u"new");
            QCOMPARE(stored(m_path), settings.allValues());
        }
    }

    /// If one value is refused, the others of the same change are stored, and later the refused
    /// one, too.
    void refusedValue()
    {
        const LogCapture log;
        const auto db = database(m_path);
        QtAppSettingsInSqlManager settings(db);
        QVERIFY(
            db->createQuery(u"CREATE TRIGGER t BEFORE INSERT ON Settings WHEN NEW.Value = 'bad' "
                            "BEGIN SELECT RAISE(ABORT, 'refused'); END"_qs)
                .exec());
        ValuesList values{{u"bad"_qs, u"bad"_qs}};
        for (int i = 0; i < 20; ++i)
            values.emplace_back(QString::number(i), u"good"_qs);
        settings.setValues(values, {});
        settings.setValue(u"0"_qs, u"better"_qs);
        Values expected = settings.allValues();
        QCOMPARE(expected.take(u"bad"_qs), u"bad");
        QCOMPARE(stored(m_path), expected);
        QCOMPARE(log.texts().filter(u"refused"_qs).size(), 1);
        QVERIFY(log.texts()
                    .filter(u"ASSERTION"_qs)
                    .value(0)
                    .startsWith(u"ASSERTION FAILED: m_table->write(p.first, p.second), "
                                "../../src/pmxcl/qt/db/qtappsettingsinsqlmanager,"));
        // All old values are better than a mix of old and new ones.
        settings.setAllValues(settings.allValues(), {});
        QCOMPARE(stored(m_path), expected);
        QVERIFY(db->createQuery(u"DROP TRIGGER t"_qs).exec());
        settings.setValue(u"0"_qs, u"best"_qs);
        QCOMPARE(stored(m_path), settings.allValues());
    }

    void manyProcesses()
    {
        // They start without a file, so they also create it at the same time.
        const QStringList prefixes{u"a"_qs, u"b"_qs, u"c"_qs, u"d"_qs};
        for (int round = 0; round < 3; ++round) {
            init();
            std::vector<std::unique_ptr<QProcess>> writers;
            for (const QString &prefix : prefixes)
                writers.push_back(startWriter(m_path, prefix, 1, 20));
            for (const auto &writer : writers) {
                QVERIFY(writer->waitForFinished());
                QCOMPARE(writer->exitStatus(), QProcess::NormalExit);
                QCOMPARE(writer->exitCode(), 0);
            }
            const Values values = stored(m_path);
            QCOMPARE(values.size(), 200);
            QCOMPARE(std::count(values.cbegin(), values.cend(), u"20"_qs), 200);
        }
    }

    void killedWhileWriting()
    {
        int last = 0;
        for (int round = 0; round < 100; ++round) {
            const auto writer = startWriter(m_path, u"a"_qs, last + 1, last + 1'000'000);
            QByteArray told;
            while (told.count('\n') <= round % 4) {
                QVERIFY(writer->waitForReadyRead());
                told += writer->readAll();
            }
            writer->kill();
            QVERIFY(writer->waitForFinished());
            QCOMPARE(writer->exitStatus(), QProcess::CrashExit);
            told += writer->readAll();
            const int committed = told.left(told.lastIndexOf('\n')).split('\n').last().toInt();

            QVERIFY(!database(m_path)->checkIfCorrupt());
            const Values values = stored(m_path);
            QCOMPARE(values.size(), 50);
            last = values.value(u"a0"_qs).toInt();
            QVERIFY(last == committed || last == committed + 1);
            QCOMPARE(std::count(values.cbegin(), values.cend(), QString::number(last)), 50);
        }
    }

private:
    std::unique_ptr<QTemporaryDir> m_dir;
    QString m_path;
};

int main(int argc, char *argv[])
{
    const QCoreApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() == 5 && !arguments.at(1).startsWith(u'-'))
        return writeSettings(arguments.at(1), arguments.at(2), arguments.at(3).toInt(),
                             arguments.at(4).toInt());
    TestSettings test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_settings.moc"
