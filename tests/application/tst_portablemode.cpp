#include "appcoreconfig.h"
#include "portableversionmanager.h"
#include "qtappconfigbase.h"
#include "qtappportablemodesupport.h"

#include <QStorageInfo>
#include <QTemporaryDir>
#include <QTest>

/// Built as for portable installations.
class TestPortableMode : public QObject {
    Q_OBJECT
    QTemporaryDir m_config;
    QString m_app;

    /// Makes the platform report that download location.
    void setDownloads(const QString &path)
    {
        QFile dirs(m_config.filePath(u"user-dirs.dirs"_qs));
        QVERIFY(dirs.open(QIODevice::WriteOnly));
        dirs.write("XDG_DOWNLOAD_DIR=\"" + path.toUtf8() + "\"\n");
    }

private Q_SLOTS:
    void initTestCase()
    {
        m_app = QCoreApplication::applicationDirPath();
        qputenv("XDG_CONFIG_HOME", m_config.path().toUtf8());
    }

    void paths()
    {
        setDownloads(u"/home/me/dl"_qs);
        const QtAppPortableModeSupport support(true);
        const std::pair<QString, QString> cases[] = {
            {u"/home/me/dl"_qs, u"sysdownloadloc"_qs},
            {u"/home/me/dl/"_qs, u"sysdownloadloc/"_qs},
            {u"/home/me/dl/ž.zip"_qs, u"sysdownloadloc/ž.zip"_qs},
            {u"/home/me/dl2/a"_qs, u"/home/me/dl2/a"_qs},
            {u"/home/me/DL/a"_qs, u"/home/me/DL/a"_qs},
            {m_app + u"/x/y"_qs, u"appdir/x/y"_qs},
            {u""_qs, u""_qs},
            {u"a/b"_qs, u"a/b"_qs},
            {u"appdirx/y"_qs, u"appdirx/y"_qs}};
        for (const auto &[path, stored] : cases) {
            QCOMPARE(support.encodePath(path), stored);
            QCOMPARE(support.decodePath(stored), path);
        }
        // A path that reads like a tag is expanded: the stored form has no marks around tags.
        QCOMPARE(support.decodePath(u"appdir/x"_qs), m_app + u"/x"_qs);
        // Below the root of the same file system, which has a tag of its own unless it is "/".
        const QString sibling = m_app + u'2';
        const QString root = QStorageInfo(m_app).rootPath();
        QCOMPARE(support.encodePath(sibling),
                 root == u"/" ? sibling : u"appdiskroot"_qs + sibling.mid(root.size()));
        QCOMPARE(support.decodePath(support.encodePath(sibling)), sibling);

        const QtAppPortableModeSupport notPortable(false);
        QCOMPARE(notPortable.encodePath(u"/home/me/dl/a"_qs), u"/home/me/dl/a"_qs);
        QCOMPARE(notPortable.decodePath(u"sysdownloadloc/a"_qs), u"/home/me/dl/a"_qs);
    }

    void downloadFolderWithinApplicationFolder()
    {
        setDownloads(m_app + u"/dl"_qs);
        const QtAppPortableModeSupport support(true);
        QCOMPARE(support.encodePath(m_app + u"/dl/a"_qs), u"sysdownloadloc/a"_qs);
        QCOMPARE(support.encodePath(m_app + u"/a"_qs), u"appdir/a"_qs);
    }

    void portableWhenTheFolderIsThere()
    {
        const QString beside = m_app + u"/portabledata"_qs;
        QDir(beside).removeRecursively();
        const QtAppConfigBase ordinary;
        for (const auto &[path, portable, data] :
             {std::tuple(u""_qs, false, ordinary.dataDir().path()),
              std::tuple(u""_qs, true, beside),
              std::tuple(u"/no/such/folder"_qs, true, u"/no/such/folder"_qs)}) {
            QVERIFY(!portable || QDir().mkpath(beside));
            const auto manager = QSharedPointer<PortableVersionManager>::create(path);
            QCOMPARE(manager->isPortableMode(), portable);
            QCOMPARE(manager->portableModeSupport()->encodePath(m_app) == u"appdir", portable);
            const AppCoreConfig config(QSharedPointer<QtAppConfigBase>::create(), manager);
            QCOMPARE(config.dataDir().path(), data);
            QCOMPARE(config.logsDir().path(), data + u"/logs"_qs);
        }
        QDir(beside).removeRecursively();
    }
};

QTEST_GUILESS_MAIN(TestPortableMode)
#include "tst_portablemode.moc"
