#include "appcoreconfig.h"
#include "portableversionmanager.h"
#include "qtappconfigbase.h"
#include "qtappportablemodesupport.h"

#include <QTest>

/// As a build for portable installations has it.
class TestPortableVersionManager : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void portableWhenTheFolderIsThere()
    {
        const QString app = QCoreApplication::applicationDirPath();
        const QString beside = app + u"/portabledata"_qs;
        QDir(beside).removeRecursively();
        for (const auto &[path, portable, data] :
             {std::tuple(u""_qs, false, QtAppConfigBase().dataDir().path()),
              std::tuple(u""_qs, true, beside), std::tuple(u"/no/such"_qs, true, u"/no/such"_qs)}) {
            QVERIFY(!portable || QDir().mkpath(beside));
            const auto manager = QSharedPointer<PortableVersionManager>::create(path);
            QCOMPARE(manager->isPortableMode(), portable);
            QCOMPARE(manager->portableModeSupport()->encodePath(app) == u"appdir", portable);
            const AppCoreConfig config(QSharedPointer<QtAppConfigBase>::create(), manager);
            QCOMPARE(config.dataDir().path(), data);
        }
        QDir(beside).removeRecursively();
    }
};

QTEST_GUILESS_MAIN(TestPortableVersionManager)
#include "tst_portableversionmanager.moc"
