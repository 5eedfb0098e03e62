#include "appcoreconfig.h"
#include "appversion.h"
#include "portableversionmanager.h"
#include "qtappportablemodesupport.h"
#include "systemdefaultdownloadlocation.h"

#include <QCoreApplication>
#include <QFile>
#include <QStorageInfo>
#include <QTemporaryDir>
#include <QTest>

class TestQtAppPortableModeSupport : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void codec_data();
    void codec();
    void siblingOfApplicationFolder();
    void downloadFolderWithinApplicationFolder();
    void notPortable();
    void folders_data();
    void folders();
    void version();

private:
    /// Makes the platform report that download location.
    void setDownloads(const QString &path);

    QTemporaryDir m_home;
};

void TestQtAppPortableModeSupport::setDownloads(const QString &path)
{
    QFile dirs(m_home.filePath(QStringLiteral("user-dirs.dirs")));
    QVERIFY(dirs.open(QIODevice::WriteOnly));
    dirs.write("XDG_DOWNLOAD_DIR=\"" + path.toUtf8() + "\"\n");
}

void TestQtAppPortableModeSupport::initTestCase()
{
    QVERIFY(m_home.isValid());
    qputenv("XDG_CONFIG_HOME", m_home.path().toUtf8());
    qputenv("XDG_DATA_HOME", m_home.filePath(QStringLiteral("data")).toUtf8());
    QCoreApplication::setOrganizationName(QStringLiteral("Tessmark"));
    QCoreApplication::setApplicationName(QStringLiteral("Kovalo"));
    setDownloads(QStringLiteral("/home/me/Stažené"));
}

void TestQtAppPortableModeSupport::codec_data()
{
    const QString app = QCoreApplication::applicationDirPath();
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QString>("readBack");
    const auto both = [](const char *name, const QString &path, const QString &stored) {
        QTest::newRow(name) << path << stored << path;
    };
    both("in downloads", QStringLiteral("/home/me/Stažené/a.zip"),
         QStringLiteral("sysdownloadloc/a.zip"));
    both("downloads itself", QStringLiteral("/home/me/Stažené"), QStringLiteral("sysdownloadloc"));
    both("downloads with slash", QStringLiteral("/home/me/Stažené/"),
         QStringLiteral("sysdownloadloc/"));
    both("sibling of downloads", QStringLiteral("/home/me/Stažené2/a"),
         QStringLiteral("/home/me/Stažené2/a"));
    both("other case", QStringLiteral("/home/me/stažené/a"), QStringLiteral("/home/me/stažené/a"));
    both("beside the executable", app + QStringLiteral("/x/y"), QStringLiteral("appdir/x/y"));
    both("empty", QString(), QString());
    both("relative", QStringLiteral("a/b"), QStringLiteral("a/b"));
    both("tag and another letter", QStringLiteral("appdirx/y"), QStringLiteral("appdirx/y"));
    // A path that reads like a tag is expanded: the stored form has no marks around tags.
    QTest::newRow("reads like a tag")
        << QStringLiteral("appdir/x") << QStringLiteral("appdir/x") << app + QStringLiteral("/x");
}

void TestQtAppPortableModeSupport::codec()
{
    QFETCH(const QString, path);
    QFETCH(const QString, stored);
    const QtAppPortableModeSupport support(true);
    QCOMPARE(support.encodePath(path), stored);
    QTEST(support.decodePath(stored), "readBack");
}

void TestQtAppPortableModeSupport::siblingOfApplicationFolder()
{
    // Below the root of the same file system, which has a tag of its own unless it is "/".
    const QString sibling = QCoreApplication::applicationDirPath() + u'2';
    const QString root = QStorageInfo(QCoreApplication::applicationDirPath()).rootPath();
    const QtAppPortableModeSupport support(true);
    QCOMPARE(support.encodePath(sibling),
             root == u"/" ? sibling : QStringLiteral("appdiskroot") + sibling.mid(root.size()));
    QCOMPARE(support.decodePath(support.encodePath(sibling)), sibling);
}

void TestQtAppPortableModeSupport::downloadFolderWithinApplicationFolder()
{
    const QString app = QCoreApplication::applicationDirPath();
    setDownloads(app + QStringLiteral("/dl"));
    const QtAppPortableModeSupport support(true);
    QCOMPARE(support.encodePath(app + QStringLiteral("/dl/a")), u"sysdownloadloc/a");
    QCOMPARE(support.encodePath(app + QStringLiteral("/a")), u"appdir/a");
}

void TestQtAppPortableModeSupport::notPortable()
{
    setDownloads(QStringLiteral("/mnt/dl"));
    QCOMPARE(systemDefaultDownloadLocation(), u"/mnt/dl");
    const QtAppPortableModeSupport support(false);
    QCOMPARE(support.encodePath(QStringLiteral("/mnt/dl/a")), u"/mnt/dl/a");
    QCOMPARE(support.decodePath(QStringLiteral("sysdownloadloc/a")), u"/mnt/dl/a");
}

void TestQtAppPortableModeSupport::folders_data()
{
    QTest::addColumn<QString>("portablePath");
    QTest::addColumn<bool>("portable");
    QTest::addColumn<QString>("data");
    QTest::addColumn<QString>("logs");
    const QString own = m_home.filePath(QStringLiteral("data/Tessmark/Kovalo"));
    QTest::newRow("user's folders") << QString() << false << own << own + QStringLiteral("/logs");
    QTest::newRow("portable, missing folder")
        << QStringLiteral("/no/such/folder") << true << QStringLiteral("/no/such/folder")
        << QStringLiteral("/no/such/folder/logs");
}

void TestQtAppPortableModeSupport::folders()
{
    QFETCH(const QString, portablePath);
    QFETCH(const bool, portable);
    const auto manager = QSharedPointer<PortableVersionManager>::create(portablePath);
    QCOMPARE(manager->isPortableMode(), portable);
    QCOMPARE(!manager->portableModeSupport().isNull(), portable);
    QCOMPARE(manager->appRootDir(), QDir(QCoreApplication::applicationDirPath()));
    if (!portable)
        QCOMPARE(manager->dataDir(), QDir());

    const AppCoreConfig config(QSharedPointer<QtAppConfigBase>::create(), manager);
    QTEST(config.dataDir().path(), "data");
    QTEST(config.localDataDir().path(), "data");
    QTEST(config.logsDir().path(), "logs");
}

void TestQtAppPortableModeSupport::version()
{
    QCOMPARE(appVersion(), u"6.25.0.6016");
    QVERIFY(!mobileVersion());
}

QTEST_GUILESS_MAIN(TestQtAppPortableModeSupport)
#include "tst_qtappportablemodesupport.moc"
