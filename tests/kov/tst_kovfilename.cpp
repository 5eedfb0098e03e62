#include "kovdownloadfolder.h"
#include "kovfilename.h"
#include "kovpartialfile.h"

#include <QTest>

#include <csignal>
#include <memory>
#include <sys/resource.h>
#include <unistd.h>

class TestKovFileName : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void sanitizes()
    {
        const auto &sanitized = KovFileName::sanitized;
        QCOMPARE(sanitized(u"Звіт 2026 \U0001F600.txt"_qs), u"Звіт 2026 \U0001F600.txt"_qs);
        QCOMPARE(sanitized(u"/etc/passwd"_qs), u"passwd"_qs);
        QCOMPARE(sanitized(u"../../.ssh/authorized_keys"_qs), u"authorized_keys"_qs);
        QCOMPARE(sanitized(u"..\\..\\x.txt"_qs), u"x.txt"_qs);
        QCOMPARE(sanitized(u"folder/"_qs), QString());
        QCOMPARE(sanitized(u".."_qs), QString());
        QCOMPARE(sanitized(u"a/.."_qs), QString());
        QCOMPARE(sanitized(u".bashrc"_qs), u"bashrc"_qs);
        QCOMPARE(sanitized(u"  . name .txt. . "_qs), u"name .txt"_qs);
        QCOMPARE(sanitized(u"a<b>c:d\"e|f?g*h"_qs), u"a_b_c_d_e_f_g_h"_qs);
        QCOMPARE(sanitized(u"a\nb\tc\u0000d\u007fe"_qs), u"a_b_c_d_e"_qs);
        QCOMPARE(sanitized(u"photo\u202egnp.exe"_qs), u"photo_gnp.exe"_qs);
        QCOMPARE(sanitized(QString(u'a') + QChar(0xD83D) + u".txt"_qs), u"a\ufffd.txt"_qs);
        QCOMPARE(sanitized(QString(300, u'a') + u".tar.gz"_qs), QString(193, u'a') + u".tar.gz"_qs);
        QCOMPARE(sanitized(QString(150, u'\u4e2d') + u".mp4"_qs),
                 QString(65, u'\u4e2d') + u".mp4"_qs);
        QCOMPARE(sanitized(u"a."_qs + QString(300, u'b')), u"a."_qs + QString(198, u'b'));
    }

    void anySuggestionStaysInTheFolder()
    {
        const QTemporaryDir root;
        KovDownloadFolder folder(root.filePath(u"downloads"_qs), u"part"_qs);
        const QStringList pieces{u".."_qs,  u"/"_qs, u"\\"_qs, u"a"_qs,      u"."_qs,
                                 u"%2f"_qs, u" "_qs, u"~"_qs,  u"\u0000"_qs, u"\u2215"_qs};
        int made = 0;
        for (int i = 0; i < 1000; ++i) {
            const QString name =
                KovFileName::sanitized(pieces[i % 10] + pieces[i / 10 % 10] + pieces[i / 100]);
            if (name.isEmpty())
                continue;
            QString error;
            const auto file = folder.createFile(name, error);
            QVERIFY2(file && file->moveTo(folder.freePath(name)), qPrintable(error));
            ++made;
        }
        const auto all = QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden;
        QCOMPARE(QDir(root.filePath(u"downloads"_qs)).entryList(all).size(), made);
        QCOMPARE(QDir(root.path()).entryList(all), QStringList{u"downloads"_qs});
    }

    void namesFromUrlsAndNumbers()
    {
        const auto fromUrl = [](const QString &url) { return KovFileName::fromUrl(QUrl(url)); };
        QCOMPARE(fromUrl(u"http://h/a/%D0%B9%20x.zip?c=d.txt#e"_qs), u"й x.zip"_qs);
        QCOMPARE(fromUrl(u"http://h/..%2F..%2Fx.txt"_qs), u"x.txt"_qs);
        QCOMPARE(fromUrl(u"http://h/"_qs), u"download"_qs);
        QCOMPARE(KovFileName::numbered(u"a.txt"_qs, 1), u"a.txt"_qs);
        QCOMPARE(KovFileName::numbered(u"%2.tar.gz"_qs, 10), u"%2 (10).tar.gz"_qs);
        QCOMPARE(KovFileName::numbered(u"a"_qs, 3), u"a (3)"_qs);
    }

    void filesGetTheirOwnNames()
    {
        const QTemporaryDir root;
        const auto path = [&root](const QString &name) { return root.filePath(name); };
        QVERIFY(QFile::link(u"/nowhere"_qs, path(u"a.txt.part"_qs)));
        KovDownloadFolder folder(root.path(), u"part"_qs);
        QString error;
        const auto first = folder.createFile(u"a.txt"_qs, error);
        const auto second = folder.createFile(u"a.txt"_qs, error);
        QVERIFY2(first && second, qPrintable(error));
        QCOMPARE(first->path(), path(u"a (2).txt.part"_qs));
        QCOMPARE(second->path(), path(u"a (3).txt.part"_qs));
        QVERIFY(second->write(0, "second", 6));
        // Nothing is replaced.
        QVERIFY(QFile::link(u"/nowhere"_qs, path(u"a.txt"_qs)));
        QVERIFY(!second->moveTo(path(u"a.txt"_qs)));
        QCOMPARE(second->errorNumber(), 0);
        QVERIFY(second->moveTo(folder.freePath(u"a.txt"_qs)));
        QCOMPARE(second->path(), path(u"a (2).txt"_qs));
        QVERIFY(QFile::remove(path(u"a.txt"_qs)));
        QCOMPARE(folder.freePath(u"a.txt"_qs), path(u"a.txt"_qs));
        // A file or link that replaced a partial file is not written to.
        QVERIFY(first->remove() && QFile::link(second->path(), first->path()));
        QVERIFY(!KovPartialFile::open(first->path(), error));
        QVERIFY(first->remove());
        QCOMPARE(::link(qPrintable(second->path()), qPrintable(first->path())), 0);
        QVERIFY(!KovPartialFile::open(first->path(), error));
        QCOMPARE(QFileInfo(second->path()).size(), 6);
    }

    void partialFiles()
    {
        const std::pair<QString, QString> expected[] = {
            {u"kovdownload"_qs, u"a.txt.kovdownload"_qs},
            {{}, u"a.txt"_qs},
            {u".part"_qs, u"a.txt.part"_qs},
            {u"/../../x"_qs, u"a.txt.x"_qs}};
        for (const auto &[suffix, partial] : expected) {
            const QTemporaryDir root;
            QString error;
            QVERIFY(KovDownloadFolder(root.path(), suffix).createFile(u"a.txt"_qs, error));
            QCOMPARE(QDir(root.path()).entryList(QDir::Files), QStringList{partial});
        }
    }

    void errorsAreTold()
    {
        const QTemporaryDir root;
        QFile inTheWay(root.filePath(u"file"_qs));
        QVERIFY(inTheWay.open(QIODevice::WriteOnly));
        QString error;
        QVERIFY(!KovDownloadFolder(inTheWay.fileName(), {}).createFile(u"a"_qs, error));
        QVERIFY(error.contains(inTheWay.fileName()));
        KovDownloadFolder folder(root.path(), QString(200, u's'));
        QVERIFY(!folder.createFile(QString(200, u'n'), error));
        QVERIFY(error.contains(u"too long"));
        QVERIFY(!KovPartialFile::open(u"/dev/full"_qs, error));

        // Half of it is written before a write reports the error.
        ::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{8, RLIM_INFINITY};
        const auto file = KovDownloadFolder(root.path(), {}).createFile(u"a"_qs, error);
        QCOMPARE(::setrlimit(RLIMIT_FSIZE, &limit), 0);
        const bool written = file->write(4, "too much", 8);
        const rlimit none{RLIM_INFINITY, RLIM_INFINITY};
        QCOMPARE(::setrlimit(RLIMIT_FSIZE, &none), 0);
        QVERIFY(!written);
        QCOMPARE(file->errorNumber(), EFBIG);
        QCOMPARE(QFileInfo(file->path()).size(), 8);
    }
};

QTEST_GUILESS_MAIN(TestKovFileName)
#include "tst_kovfilename.moc"
