#include "logcapture.h"
#include "multithreadedsqldatabasemanager.h"
#include "qtappsettingsinsqlmanager.h"

#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <vector>

namespace {

using Values = QtAppAbstractSettingsManager::Values;
using ValuesList = QtAppAbstractSettingsManager::ValuesList;

QSharedPointer<QtAppSettingsInSqlManager> openSettings(const QString &path)
{
    return QSharedPointer<QtAppSettingsInSqlManager>::create(
        QSharedPointer<MultiThreadedSqlDatabaseManager>::create(path, QString()));
}

/// What another process does: writes all its settings anew, with a higher number each time, and
/// says so when it is done. Returns whether the log has no complaint.
int writeSettings(const QString &path, const QString &prefix, int from, int until)
{
    const LogCapture log;
    const auto settings = openSettings(path);
    for (int number = from; number <= until; ++number) {
        ValuesList values;
        for (int key = 0; key < 50; ++key)
            values.emplace_back(prefix + QString::number(key), QString::number(number));
        settings->setValues(values, {});
        std::printf("%d\n", number);
        std::fflush(stdout);
    }
    const QStringList complaints = log.texts().filter(u"WARNING"_qs);
    std::fputs(qPrintable(complaints.join(u'\n')), stderr);
    return complaints.isEmpty() ? 0 : 1;
}

std::unique_ptr<QProcess> startWriter(const QString &path, const QString &prefix, int from,
                                      int until)
{
    auto writer = std::make_unique<QProcess>();
    writer->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    writer->start(QCoreApplication::applicationFilePath(),
                  {path, prefix, QString::number(from), QString::number(until)});
    return writer;
}

} // namespace

class TestSettingsOfManyProcesses : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void atTheSameTime();
    void killedWhileWriting();
};

void TestSettingsOfManyProcesses::atTheSameTime()
{
    for (int round = 0; round < 3; ++round) {
        const QTemporaryDir dir;
        const QString path = dir.filePath(u"db.sqlite"_qs);
        // They start on no file at all, so they also create it at the same time.
        std::vector<std::unique_ptr<QProcess>> writers;
        for (const QString &prefix : {u"a"_qs, u"b"_qs, u"c"_qs, u"d"_qs})
            writers.push_back(startWriter(path, prefix, 1, 20));
        for (const auto &writer : writers) {
            QVERIFY(writer->waitForFinished());
            QCOMPARE(writer->exitStatus(), QProcess::NormalExit);
            QCOMPARE(writer->exitCode(), 0);
        }
        Values expected;
        for (const QString &prefix : {u"a"_qs, u"b"_qs, u"c"_qs, u"d"_qs})
            for (int key = 0; key < 50; ++key)
                expected.insert(prefix + QString::number(key), u"20"_qs);
        QCOMPARE(openSettings(path)->allValues(), expected);
    }
}

void TestSettingsOfManyProcesses::killedWhileWriting()
{
    const QTemporaryDir dir;
    const QString path = dir.filePath(u"db.sqlite"_qs);
    int stored = 0;
    for (int round = 0; round < 100; ++round) {
        const auto writer = startWriter(path, u"a"_qs, stored + 1, stored + 1'000'000);
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

        const auto db = QSharedPointer<MultiThreadedSqlDatabaseManager>::create(path, QString());
        QVERIFY(!db->checkIfCorrupt());
        const Values values = QtAppSettingsInSqlManager(db).allValues();
        QCOMPARE(values.size(), 50);
        stored = values.value(u"a0"_qs).toInt();
        QVERIFY(stored == committed || stored == committed + 1);
        QVERIFY(std::all_of(values.cbegin(), values.cend(), [stored](const QString &value) {
            return value == QString::number(stored);
        }));
    }
}

int main(int argc, char *argv[])
{
    const QCoreApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() == 5 && !arguments.at(1).startsWith(u'-'))
        return writeSettings(arguments.at(1), arguments.at(2), arguments.at(3).toInt(),
                             arguments.at(4).toInt());
    TestSettingsOfManyProcesses test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_settingsofmanyprocesses.moc"
