#include "abstractsqldatabasemanager.h"
#include "appdataaccesshelper.h"
#include "appsettings.h"
#include "appsettingsmanager.h"
#include "dmcoresettings.h"
#include "portableversionmanager.h"
#include "qtappportablemodesupport.h"
#include "qtqobjectstracker.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QStorageInfo>
#include <QTemporaryDir>
#include <QTest>

using Values = QtAppAbstractSettingsManager::Values;

class TestAppSettingsManager : public QObject {
    Q_OBJECT
    QTemporaryDir m_dir;
    const QString m_app = QCoreApplication::applicationDirPath();

private Q_SLOTS:
    void initTestCase()
    {
        QFile dirs(m_dir.filePath(u"user-dirs.dirs"_qs));
        QVERIFY(dirs.open(QIODevice::WriteOnly));
        dirs.write("XDG_DOWNLOAD_DIR=\"/home/me/dl\"\n");
        qputenv("XDG_CONFIG_HOME", m_dir.path().toUtf8());
    }

    /// The computed defaults; the constant ones are in a table.
    void defaults()
    {
        const auto settings = AppDataAccessHelper(QDir(m_dir.path()), {}).settings();
        const auto value = [&](const char *key) {
            return settings->defaultValue(QLatin1String(key));
        };
        QCOMPARE(settings->allDefaultValues().size(), 66);
        QCOMPARE(value("DefaultDownloadPath"), u"/home/me/dl");
        QCOMPARE(value("ScheduleForNewDownloads"), u"127:360:600");
        QCOMPARE(value("NetworkProxyMode"), u"1");
        QCOMPARE(value("WbDownloadsUnwantedHostsList").split(u' ').filter(u"."_qs).size(), 8);
        QVERIFY(!value("LocaleName").isNull() && value("LocaleName").isEmpty());
    }

    void settingsAreReadLateAndWithTheirPaths()
    {
        const QtQObjectsTracker tracker;
        for (const bool portable : {false, true}) {
            const QString folder = m_dir.filePath(u"new/data%1"_qs.arg(portable));
            const auto support = QSharedPointer<QtAppPortableModeSupport>::create(portable);
            const AppDataAccessHelper helper(QDir(folder), support);
            const AppDataAccessHelper otherHost(QDir(folder), {});
            QCOMPARE(helper.database()->databaseFilePath(), folder + u"/db.sqlite"_qs);
            QVERIFY(!QFile::exists(folder));

            const QString stored = portable ? u"sysdownloadloc"_qs : u"/home/me/dl"_qs;
            Values inMemory{{u"AntivirusArgs"_qs, u"/home/me/dl"_qs}};
            Values inTable = inMemory;
            for (const char *key :
                 {"DefaultDownloadPath", "FixedDownloadPath", "TorrentsFolder", "AntivirusPath",
                  "LaunchExternalAppOnDownloadCompletion_AppPath"}) {
                inMemory.insert(QLatin1String(key), u"/home/me/dl/x"_qs);
                inTable.insert(QLatin1String(key), stored + u"/x"_qs);
            }
            {
                const auto settings = helper.settings();
                QCOMPARE(helper.settings(), settings);
                QCOMPARE(settings->defaultValue(u"DefaultDownloadPath"_qs), stored);
                settings->setAllValues(inMemory, {});
                settings->setValue(u"TorrentsFolder"_qs, u"/home/me/dl/y"_qs);
            }
            QCOMPARE(tracker.aliveObjects(), QStringList());
            inMemory.insert(u"TorrentsFolder"_qs, u"/home/me/dl/y"_qs);
            inTable.insert(u"TorrentsFolder"_qs, stored + u"/y"_qs);
            QCOMPARE(helper.settings()->allValues(), inMemory);
            QCOMPARE(otherHost.settings()->allValues(), inTable);
        }
    }

    void portablePaths()
    {
        QVERIFY(!PortableVersionManager().portableModeSupport()); // only in a portable build
        const QtAppPortableModeSupport support(true);
        // Below the root of the same file system, which has its own tag unless it is "/".
        const QString root = QStorageInfo(m_app).rootPath();
        const QString sibling = m_app + u'2';
        const std::pair<QString, QString> cases[] = {
            {u"/home/me/dl"_qs, u"sysdownloadloc"_qs},
            {u"/home/me/dl/ž.zip"_qs, u"sysdownloadloc/ž.zip"_qs},
            {u"/home/me/dl2/a"_qs, u"/home/me/dl2/a"_qs},
            {u"/home/me/DL/a"_qs, u"/home/me/DL/a"_qs},
            {m_app + u"/x/y"_qs, u"appdir/x/y"_qs},
            {sibling, root == u"/" ? sibling : u"appdiskroot"_qs + sibling.mid(root.size())},
            {u""_qs, u""_qs},
            {u"appdirx/y"_qs, u"appdirx/y"_qs}};
        for (const auto &[path, stored] : cases) {
            QCOMPARE(support.encodePath(path), stored);
            QCOMPARE(support.decodePath(stored), path);
        }
    }
};

QTEST_GUILESS_MAIN(TestAppSettingsManager)
#include "tst_appsettingsmanager.moc"
