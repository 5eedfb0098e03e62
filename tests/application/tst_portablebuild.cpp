#include "portableversionmanager.h"
#include "qtappportablemodesupport.h"

#include <QCoreApplication>
#include <QDir>
#include <QTest>

/// The manager, compiled as in a build for portable installations.
class TestPortableBuild : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void portableWhenTheFolderIsThere()
    {
        const QDir app(QCoreApplication::applicationDirPath());
        const QString data = app.absoluteFilePath(QStringLiteral("portabledata"));
        QDir(data).removeRecursively();
        QVERIFY(!PortableVersionManager().isPortableMode());
        QVERIFY(app.mkdir(QStringLiteral("portabledata")));
        const PortableVersionManager manager;
        QVERIFY(manager.isPortableMode());
        QCOMPARE(manager.localDataDir().path(), data);
        QCOMPARE(manager.portableModeSupport()->encodePath(app.filePath(QStringLiteral("a"))),
                 QStringLiteral("appdir/a"));
        QDir(data).removeRecursively();
        const PortableVersionManager given(QStringLiteral("/given"));
        QVERIFY(given.isPortableMode());
        QCOMPARE(given.dataDir().path(), QStringLiteral("/given"));
    }
};

QTEST_GUILESS_MAIN(TestPortableBuild)
#include "tst_portablebuild.moc"
