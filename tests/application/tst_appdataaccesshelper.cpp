#include "abstractsqldatabasemanager.h"
#include "appdataaccesshelper.h"
#include "qtappabstractsettingsmanager.h"
#include "qtappportablemodesupport.h"
#include "qtqobjectstracker.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

class TestAppDataAccessHelper : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void nothingIsTouchedBeforeItIsAskedFor();
    void sharedWhileHeldAndFreshAfterwards();
    void pathsFollowPortableMode();
};

void TestAppDataAccessHelper::nothingIsTouchedBeforeItIsAskedFor()
{
    const QTemporaryDir dir;
    const QString data = dir.filePath(QStringLiteral("new/data"));
    const AppDataAccessHelper helper(QDir(data), {});
    QCOMPARE(helper.databaseFilePath(), data + QStringLiteral("/db.sqlite"));
    const auto database = helper.database();
    QCOMPARE(database->databaseFilePath(), helper.databaseFilePath());
    QVERIFY(!QFile::exists(data));
    QVERIFY(helper.settings());
    QVERIFY(QFile::exists(helper.databaseFilePath()));
}

void TestAppDataAccessHelper::sharedWhileHeldAndFreshAfterwards()
{
    const QTemporaryDir dir;
    const QtQObjectsTracker tracker;
    const QString key = QStringLiteral("SortBy");
    const AppDataAccessHelper helper(QDir(dir.path()), {});
    const AppDataAccessHelper otherHost(QDir(dir.path()), {});
    {
        const auto settings = helper.settings();
        QCOMPARE(helper.settings(), settings);
        QCOMPARE(helper.database(), helper.database());
        QVERIFY(tracker.aliveObjects().contains(QStringLiteral("AppSettingsManager")));
        QVERIFY(tracker.aliveObjects().contains(QStringLiteral("MultiThreadedSqlDatabaseManager")));
        QCOMPARE(settings->value(key), u"1");
    }
    QCOMPARE(tracker.aliveObjects(), QStringList());
    otherHost.settings()->setValue(key, QStringLiteral("4"));
    QCOMPARE(helper.settings()->value(key), u"4");
}

void TestAppDataAccessHelper::pathsFollowPortableMode()
{
    const QTemporaryDir dir;
    const auto support = QSharedPointer<QtAppPortableModeSupport>::create(true);
    const AppDataAccessHelper helper(QDir(dir.path()), support);
    QCOMPARE(helper.settings()->value(QStringLiteral("DefaultDownloadPath")), u"sysdownloadloc");
}

QTEST_GUILESS_MAIN(TestAppDataAccessHelper)
#include "tst_appdataaccesshelper.moc"
