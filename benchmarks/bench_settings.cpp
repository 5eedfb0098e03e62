// The cost of the settings store compared with the same statements executed directly with the
// SQLite driver, on a table of 10,000 rows: reading it, changing one value, and changing 100 values
// in one transaction. The two alternate in one run, each with a file of its own. A change includes
// the sync, which on a disk takes nearly all of the time; a file system in memory shows the rest.

#include "multithreadedsqldatabasemanager.h"
#include "qtappsettingsinsqlmanager.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QHash>
#include <QSqlQuery>
#include <QString>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <vector>

namespace {

constexpr int rowsCount = 10'000;
constexpr int rounds = 101;

using ValuesList = QtAppAbstractSettingsManager::ValuesList;

void require(bool ok, const char *what)
{
    if (ok)
        return;
    std::fprintf(stderr, "failed: %s\n", what);
    std::exit(1);
}

ValuesList makeValues(int count, int round)
{
    ValuesList values;
    for (int i = 0; i < count; ++i)
        values.emplace_back(QStringLiteral("NameOfASetting%1").arg(i * (rowsCount / count)),
                            QStringLiteral("value %1 of round %2").arg(i).arg(round));
    return values;
}

/// The store's statements, without the store.
class PlainTable {
public:
    explicit PlainTable(const QSqlDatabase &db) : m_db(db) { }

    QHash<QString, QString> read()
    {
        QHash<QString, QString> values;
        QSqlQuery query(m_db);
        query.setForwardOnly(true);
        require(query.exec(QStringLiteral("SELECT Name, Value FROM Settings")), "read");
        while (query.next())
            values.insert(query.value(0).toString(), query.value(1).toString());
        return values;
    }

    void write(const ValuesList &values)
    {
        require(m_db.transaction(), "begin");
        QSqlQuery query(m_db);
        query.prepare(QStringLiteral("REPLACE INTO Settings (Name, Value) VALUES (:Name, :Value)"));
        for (const auto &[name, value] : values) {
            query.bindValue(QStringLiteral(":Name"), name);
            query.bindValue(QStringLiteral(":Value"), value);
            require(query.exec(), "write");
        }
        query.finish();
        require(m_db.commit(), "commit");
    }

private:
    QSqlDatabase m_db;
};

double microseconds(const std::function<void()> &work)
{
    QElapsedTimer timer;
    timer.start();
    work();
    return static_cast<double>(timer.nsecsElapsed()) / 1000;
}

double median(std::vector<double> samples)
{
    const auto middle = samples.begin() + static_cast<ptrdiff_t>(samples.size() / 2);
    std::nth_element(samples.begin(), middle, samples.end());
    return *middle;
}

/// Runs both in turn and prints the medians per value.
void compare(const char *what, int values, const std::function<void(int round)> &store,
             const std::function<void(int round)> &plain)
{
    std::vector<double> storeSamples;
    std::vector<double> plainSamples;
    for (int round = 0; round < rounds; ++round) {
        const auto runStore = [&] {
            storeSamples.push_back(microseconds([&] { store(round); }) / values);
        };
        if (round % 2 == 0)
            runStore();
        plainSamples.push_back(microseconds([&] { plain(round); }) / values);
        if (round % 2 != 0)
            runStore();
    }
    const double ours = median(storeSamples);
    const double theirs = median(plainSamples);
    std::printf("  %-34s %9.2f us %9.2f us   %.2f\n", what, ours, theirs, ours / theirs);
}

void run(const char *where, const QString &folder)
{
    const QTemporaryDir dir(folder + QStringLiteral("/bench_settings-XXXXXX"));
    require(dir.isValid(), "folder");
    const auto makeDatabase = [&dir](const QString &name) {
        auto db = QSharedPointer<MultiThreadedSqlDatabaseManager>::create(dir.filePath(name), name);
        QtAppSettingsInSqlManager(db).setValues(makeValues(rowsCount, -1), {});
        return db;
    };
    const auto storeDb = makeDatabase(QStringLiteral("store"));
    const auto plainDb = makeDatabase(QStringLiteral("plain"));
    PlainTable plain(plainDb->database());
    QtAppSettingsInSqlManager settings(storeDb);

    std::printf("%s\n  %-34s %12s %12s   ratio\n", where, "per value", "store", "plain");
    compare(
        "reading 10,000 values", rowsCount,
        [&](int /*round*/) {
            require(QtAppSettingsInSqlManager(storeDb).allValues().size() == rowsCount, "read");
        },
        [&](int /*round*/) { require(plain.read().size() == rowsCount, "read"); });
    const auto compareChanges = [&](const char *what, int count) {
        compare(
            what, count, [&](int round) { settings.setValues(makeValues(count, round), {}); },
            [&](int round) { plain.write(makeValues(count, round)); });
    };
    compareChanges("changing one value", 1);
    compareChanges("changing 100 values", 100);
    require(PlainTable(storeDb->database()).read() == plain.read(), "the same values in the end");
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication app(argc, argv);
    run("On the disk", QDir::tempPath());
    if (const QString memory = QStringLiteral("/dev/shm"); QFileInfo(memory).isWritable())
        run("In memory", memory);
    return 0;
}
