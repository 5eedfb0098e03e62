#include "abstractfiletypedetector.h"

#include <QTest>

class TestAbstractFileTypeDetector : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void names_data();
    void names();
};

void TestAbstractFileTypeDetector::names_data()
{
    QTest::addColumn<QString>("names"); // separated by "|"
    QTest::addColumn<AbstractFileType>("type");
    const auto row = [](const char *name, const QString &names, AbstractFileType type) {
        QTest::newRow(name) << names << type;
    };
    row("videos", u"a.avi|b.MP4|c.tar.mkv|.vob|m.rmvb|x.f4a|y.mpg2|z.m2ts"_qs,
        AbstractFileType::Video);
    row("in videos and music", u"a.webm|a.ogg|a.3gp|a.rm|a.m4p"_qs, AbstractFileType::Video);
    row("music", u"a.mp3|a.iklax|a.ivs|a.Flac|a.m4b|a.raw|a.wma|a.mid"_qs, AbstractFileType::Music);
    row("documents", u"a.doc|a.accdb|a.PDF|a.txt|a.sxm|a.xlsb|a.csv|a.epub"_qs,
        AbstractFileType::Document);
    row("images", u"a.tif|a.JPEG|a.j2k|a.ico|a.png|a.webp|a.svg"_qs, AbstractFileType::Image);
    row("a name without a dot is the extension", u"pdf|Pdf"_qs, AbstractFileType::Document);
    row("unknown", u"|.|a.|mp4.|a.zip|readme|a.pdf |a.mp4/b|a.mp5|a.mp4?x=1"_qs,
        AbstractFileType::Unknown);
    // The Kelvin sign is a "k" in lower case only where more than ASCII is folded.
    row("beyond ASCII", u"a.m\u212Av|a.ě|a.\U0001F600"_qs, AbstractFileType::Unknown);
    row("1 MiB", QString(1 << 20, u'.') + QString(1 << 20, u'a'), AbstractFileType::Unknown);
}

void TestAbstractFileTypeDetector::names()
{
    QFETCH(const QString, names);
    QFETCH(const AbstractFileType, type);
    const QStringList all = names.split(u'|');
    for (const QString &name : all)
        QVERIFY2(AbstractFileTypeDetector().typeFromFileName(name) == type, qPrintable(name));
}

QTEST_GUILESS_MAIN(TestAbstractFileTypeDetector)
#include "tst_abstractfiletypedetector.moc"
