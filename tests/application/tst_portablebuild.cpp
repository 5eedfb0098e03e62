#include "portableversionmanager.h"
#include "qtappportablemodesupport.h"

#include <QCoreApplication>
#include <QDir>
#include <QTest>

/// The manager as a build for portable installations has it.
class TestPortableBuild : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void portableWhenTheFolderIsThere_data()
    {
        QTest::addColumn<bool>("folder");
        QTest::newRow("without") << false;
        QTest::newRow("with") << true;
    }

    void portableWhenTheFolderIsThere()
    {
        QFETCH(const bool, folder);
        QDir app(QCoreApplication::applicationDirPath());
        const QString data = app.absoluteFilePath(QStringLiteral("portabledata"));
        QDir(data).removeRecursively();
        QVERIFY(!folder || app.mkdir(QStringLiteral("portabledata")));

        const PortableVersionManager manager;
        QCOMPARE(manager.isPortableMode(), folder);
        QCOMPARE(manager.dataDir().path(), data);
        QCOMPARE(manager.localDataDir().path(), data);
        const QString file = app.filePath(QStringLiteral("a"));
        QCOMPARE(manager.portableModeSupport()->encodePath(file),
                 folder ? QStringLiteral("appdir/a") : file);
        QDir(data).removeRecursively();
    }
};

QTEST_GUILESS_MAIN(TestPortableBuild)
#include "tst_portablebuild.moc"
