#include "portableversionmanager.h"
#include "qtappportablemodesupport.h"

#include <QCoreApplication>
#include <QTest>

class TestPortableBuild : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void portableWhenTheFolderIsThere_data();
    void portableWhenTheFolderIsThere();
};

void TestPortableBuild::portableWhenTheFolderIsThere_data()
{
    QTest::addColumn<bool>("folder");
    QTest::newRow("without") << false;
    QTest::newRow("with") << true;
}

void TestPortableBuild::portableWhenTheFolderIsThere()
{
    QFETCH(const bool, folder);
    QDir app(QCoreApplication::applicationDirPath());
    const QString data = app.absoluteFilePath(QStringLiteral("portabledata"));
    QDir(data).removeRecursively();
    QVERIFY(!folder || app.mkdir(QStringLiteral("portabledata")));

    QVERIFY(PortableVersionManager::supportsPortableMode());
    const PortableVersionManager manager;
    QCOMPARE(manager.isPortableMode(), folder);
    QCOMPARE(manager.dataDir().path(), data);
    QCOMPARE(manager.localDataDir().path(), data);
    QCOMPARE(manager.portableModeSupport()->encodePath(app.filePath(QStringLiteral("a"))),
             folder ? QStringLiteral("appdir/a") : app.filePath(QStringLiteral("a")));
    QDir(data).removeRecursively();
}

QTEST_GUILESS_MAIN(TestPortableBuild)
#include "tst_portablebuild.moc"
