#include "kovdownloadfolder.h"
#include "kovfilename.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <unistd.h>

#include <memory>

class TestKovFileName : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void sanitizes_data();
    void sanitizes();
    void any_suggestion_stays_in_the_folder();
    void from_url_data();
    void from_url();
    void numbers_data();
    void numbers();

    void files_get_their_own_names();
    void commit_replaces_nothing();
    void an_abandoned_file_leaves_nothing();
    void partial_files_data();
    void partial_files();
    void errors_are_told();
};

void TestKovFileName::sanitizes_data()
{
    QTest::addColumn<QString>("suggestion");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, const QString &suggestion, const QString &expected) {
        QTest::newRow(name) << suggestion << expected;
    };
    row("harmless", u"Report 2026.pdf"_qs, u"Report 2026.pdf"_qs);
    row("any script", u"Звіт \u4e2d\u6587 \U0001F600.txt"_qs,
        u"Звіт \u4e2d\u6587 \U0001F600.txt"_qs);
    row("absolute", u"/etc/passwd"_qs, u"passwd"_qs);
    row("climbing", u"../../.ssh/authorized_keys"_qs, u"authorized_keys"_qs);
    row("climbing with backslashes", u"..\\..\\x.txt"_qs, u"x.txt"_qs);
    row("a folder", u"folder/"_qs, QString());
    row("dots only", u".."_qs, QString());
    row("climbing to nothing", u"a/.."_qs, QString());
    row("hidden", u".bashrc"_qs, u"bashrc"_qs);
    row("spaces and dots around", u"  . name .txt. . "_qs, u"name .txt"_qs);
    row("reserved characters", u"a<b>c:d\"e|f?g*h"_qs, u"a_b_c_d_e_f_g_h"_qs);
    row("control characters", u"a\nb\tc\u0000d\u007fe"_qs, u"a_b_c_d_e"_qs);
    row("direction of writing", u"photo\u202egnp.exe"_qs, u"photo_gnp.exe"_qs);
    row("half of a pair", QString(u'a') + QChar(0xD83D) + u".txt"_qs, u"a\ufffd.txt"_qs);
    row("nothing", QString(), QString());
    row("too long", QString(300, u'a') + u".tar.gz"_qs, QString(193, u'a') + u".tar.gz"_qs);
    row("too long in UTF-8", QString(150, u'\u4e2d') + u".mp4"_qs,
        QString(65, u'\u4e2d') + u".mp4"_qs);
    row("too long, no extension", u"a."_qs + QString(300, u'b'), u"a."_qs + QString(198, u'b'));
}

void TestKovFileName::sanitizes()
{
    QFETCH(QString, suggestion);
    QTEST(KovFileName::sanitized(suggestion), "expected");
}

void TestKovFileName::any_suggestion_stays_in_the_folder()
{
    const QTemporaryDir root;
    const QString folderPath = root.filePath(u"downloads"_qs);
    KovDownloadFolder folder(folderPath, u"part"_qs);
    QString error;
    const QList<QString> pieces{u".."_qs,  u"/"_qs, u"\\"_qs, u"a"_qs,      u"."_qs,
                                u"%2f"_qs, u" "_qs, u"~"_qs,  u"\u0000"_qs, u"\u2215"_qs};
    int made = 0;
    for (const QString &a : pieces) {
        for (const QString &b : pieces) {
            for (const QString &c : pieces) {
                const QString name = KovFileName::sanitized(a + b + c);
                if (name.isEmpty())
                    continue;
                const auto file = folder.createFile(name, error);
                QVERIFY2(file, qPrintable(error));
                QVERIFY(file->commit());
                ++made;
            }
        }
    }
    QCOMPARE(QDir(folderPath).entryList(QDir::Files | QDir::Hidden).size(), made);
    QCOMPARE(QDir(root.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden),
             QStringList{u"downloads"_qs});
}

void TestKovFileName::from_url_data()
{
    QTest::addColumn<QString>("url");
    QTest::addColumn<QString>("expected");
    QTest::newRow("plain") << u"http://h/a/b.zip?c=d.txt#e"_qs << u"b.zip"_qs;
    QTest::newRow("encoded") << u"http://h/%D0%B9%20x.txt"_qs << u"й x.txt"_qs;
    QTest::newRow("encoded climbing") << u"http://h/..%2F..%2Fx.txt"_qs << u"x.txt"_qs;
    QTest::newRow("root") << u"http://h/"_qs << u"download"_qs;
    QTest::newRow("no path") << u"http://h"_qs << u"download"_qs;
}

void TestKovFileName::from_url()
{
    QFETCH(QString, url);
    QTEST(KovFileName::fromUrl(QUrl(url)), "expected");
}

void TestKovFileName::numbers_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("expected");
    QTest::newRow("first") << u"a.txt"_qs << 1 << u"a.txt"_qs;
    QTest::newRow("second") << u"a.txt"_qs << 2 << u"a (2).txt"_qs;
    QTest::newRow("two extensions") << u"a.tar.gz"_qs << 10 << u"a (10).tar.gz"_qs;
    QTest::newRow("no extension") << u"a"_qs << 3 << u"a (3)"_qs;
    QTest::newRow("a percent sign") << u"%2.txt"_qs << 2 << u"%2 (2).txt"_qs;
}

void TestKovFileName::numbers()
{
    QFETCH(QString, name);
    QFETCH(int, number);
    QTEST(KovFileName::numbered(name, number), "expected");
}

void TestKovFileName::files_get_their_own_names()
{
    const QTemporaryDir root;
    QVERIFY(QFile::link(u"/nowhere"_qs, root.filePath(u"a (2).txt"_qs)));
    QVERIFY(QDir(root.path()).mkdir(u"a (4).txt.part"_qs));
    KovDownloadFolder folder(root.path(), u"part"_qs);
    QString error;
    std::vector<std::unique_ptr<KovDownloadFile>> files;
    QStringList names;
    for (int i = 0; i < 3; ++i) {
        files.push_back(folder.createFile(u"a.txt"_qs, error));
        QVERIFY2(files.back(), qPrintable(error));
        names += QFileInfo(files.back()->path()).fileName();
    }
    QCOMPARE(names, (QStringList{u"a.txt"_qs, u"a (3).txt"_qs, u"a (5).txt"_qs}));
    QVERIFY(files.at(1)->write("three"));
    QVERIFY(files.at(1)->commit());
    QFile written(root.filePath(u"a (3).txt"_qs));
    QVERIFY(written.open(QIODevice::ReadOnly));
    QCOMPARE(written.readAll(), "three");
    QVERIFY(!QFile::exists(root.filePath(u"a (3).txt.part"_qs)));
}

void TestKovFileName::commit_replaces_nothing()
{
    const QTemporaryDir root;
    KovDownloadFolder folder(root.path(), u"part"_qs);
    QString error;
    const auto file = folder.createFile(u"a.txt"_qs, error);
    QVERIFY(file->write("download"));
    QFile other(root.filePath(u"a.txt"_qs));
    QVERIFY(other.open(QIODevice::ReadWrite));
    QVERIFY(file->commit());
    QCOMPARE(file->path(), root.filePath(u"a (2).txt"_qs));
    QCOMPARE(QDir(root.path()).entryList(QDir::Files), (QStringList{u"a (2).txt"_qs, u"a.txt"_qs}));
    QCOMPARE(other.size(), 0);
}

void TestKovFileName::an_abandoned_file_leaves_nothing()
{
    const QTemporaryDir root;
    KovDownloadFolder folder(root.path(), u"part"_qs);
    QString error;
    folder.createFile(u"a.txt"_qs, error);
    QVERIFY(QDir(root.path()).isEmpty());
    // Its name is free again.
    QCOMPARE(folder.createFile(u"a.txt"_qs, error)->path(), root.filePath(u"a.txt"_qs));
}

void TestKovFileName::partial_files_data()
{
    QTest::addColumn<QString>("suffix");
    QTest::addColumn<QString>("expected");
    QTest::newRow("usual") << u"kovdownload"_qs << u"a.txt.kovdownload"_qs;
    QTest::newRow("none") << QString() << u"a.txt"_qs;
    QTest::newRow("with its dot") << u".part"_qs << u"a.txt.part"_qs;
    QTest::newRow("climbing") << u"/../../x"_qs << u"a.txt.x"_qs;
}

void TestKovFileName::partial_files()
{
    QFETCH(QString, suffix);
    QFETCH(QString, expected);
    const QTemporaryDir root;
    KovDownloadFolder folder(root.path(), suffix);
    QString error;
    const auto file = folder.createFile(u"a.txt"_qs, error);
    QVERIFY2(file, qPrintable(error));
    QCOMPARE(QDir(root.path()).entryList(QDir::Files), QStringList{expected});
    QVERIFY(file->commit());
    QCOMPARE(QDir(root.path()).entryList(QDir::Files), QStringList{u"a.txt"_qs});
}

void TestKovFileName::errors_are_told()
{
    const QTemporaryDir root;
    QFile inTheWay(root.filePath(u"file"_qs));
    QVERIFY(inTheWay.open(QIODevice::WriteOnly));
    KovDownloadFolder noFolder(inTheWay.fileName(), {});
    QString error;
    QVERIFY(!noFolder.createFile(u"a"_qs, error));
    QVERIFY(error.contains(inTheWay.fileName()));

    KovDownloadFolder folder(root.path(), QString(200, u's'));
    QVERIFY(!folder.createFile(QString(200, u'n'), error));
    QVERIFY(error.contains(u"too long"));
}

QTEST_GUILESS_MAIN(TestKovFileName)
#include "tst_kovfilename.moc"
