#include "abstractnewdownloadsrequest.h"

#include <QTest>

#include <limits>

namespace {

QVariantHash hash(std::initializer_list<std::pair<const char *, QVariant>> entries)
{
    QVariantHash result;
    for (const auto &[key, value] : entries)
        result.insert(QString::fromLatin1(key), value);
    return result;
}

} // namespace

class TestDownloadRecordsDecoding : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void absentParts();
    void persistentInfoDefaults_data();
    void persistentInfoDefaults();
    void selection_data();
    void selection();
    void timesAndRates();
    void wrongTypes_data();
    void wrongTypes();
    void hugeAndDeep();
};

void TestDownloadRecordsDecoding::absentParts()
{
    QVERIFY(toVariantHash(AbstractNewDownloadRequest()).isEmpty());
    const AbstractNewDownloadRequest decoded = toNewDownloadRequest({});
    QVERIFY(decoded.info && *decoded.info == AbstractDownloadPersistentInfo());

    QVERIFY(!AbstractFileInfo().toVariantHash().contains(QStringLiteral("lastModified")));
    QVERIFY(!AbstractFileInfo::fromVariantHash({}).lastModified.isValid());

    AbstractDownloadSourceInfo source;
    source.cookies = {QNetworkCookie("a", "1"), QNetworkCookie(), QNetworkCookie("b", "2")};
    QCOMPARE(toDownloadSourceInfo(toVariantHash(source)).cookies,
             (QList<QNetworkCookie>{QNetworkCookie("a", "1"), QNetworkCookie("b", "2")}));
}

void TestDownloadRecordsDecoding::persistentInfoDefaults_data()
{
    QTest::addColumn<QVariantHash>("decoded");
    QTest::addColumn<int>("priority");
    QTest::addColumn<int>("launchableFileIndex");
    QTest::addColumn<qint64>("order");
    QTest::newRow("missing") << QVariantHash() << 2 << -1 << qint64{-1};
    QTest::newRow("no numbers") << hash({{"priority", QStringLiteral("x")},
                                         {"launchableFileIndex", QStringLiteral("x")},
                                         {"order", QVariantList()}})
                                << 0 << -1 << qint64{-1};
    QTest::newRow("zeros") << hash({{"priority", 0}, {"launchableFileIndex", 0}, {"order", 0}}) << 0
                           << 0 << qint64{0};
    QTest::newRow("numbers as text, unknown priority")
        << hash({{"priority", 77},
                 {"launchableFileIndex", QStringLiteral("4")},
                 {"order", QStringLiteral("4294967296")}})
        << 77 << 4 << qint64{4'294'967'296};
}

void TestDownloadRecordsDecoding::persistentInfoDefaults()
{
    QFETCH(const QVariantHash, decoded);
    const AbstractDownloadPersistentInfo info = toDownloadInfo(decoded);
    QTEST(static_cast<int>(info.priority), "priority");
    QTEST(info.launchableFileIndex, "launchableFileIndex");
    QTEST(info.order, "order");
    QCOMPARE(info.tbu2c, 0);
    QVERIFY(info.uuid.isNull());
}

void TestDownloadRecordsDecoding::selection_data()
{
    QTest::addColumn<QVariant>("selected");
    QTest::addColumn<QByteArray>("bits"); // as digits, of three downloads
    QBitArray bits(2);
    bits.setBit(1);
    QTest::newRow("missing") << QVariant() << QByteArray("111");
    QTest::newRow("any byte but zero") << QVariant(QByteArray("\1\0\2", 3)) << QByteArray("101");
    QTest::newRow("too few") << QVariant(QByteArray("\0", 1)) << QByteArray("011");
    QTest::newRow("too many") << QVariant(QByteArray("\0\0\0\1\0", 5)) << QByteArray("00010");
    QTest::newRow("bits") << QVariant(bits) << QByteArray("011");
    QTest::newRow("text") << QVariant(QStringLiteral("\1\1")) << QByteArray("111");
    QTest::newRow("list") << QVariant(QVariantList{0, 0, 0}) << QByteArray("111");
}

void TestDownloadRecordsDecoding::selection()
{
    QFETCH(const QVariant, selected);
    QVariantHash request = hash({{"downloads", QVariantList{1, 2, 3}}});
    if (selected.isValid())
        request.insert(QStringLiteral("selectedDownloads"), selected);
    const QBitArray bits = toNewDownloadsRequest(request).selectedDownloads;
    QByteArray digits;
    for (qsizetype i = 0; i < bits.size(); ++i)
        digits += bits.testBit(i) ? '1' : '0';
    QTEST(digits, "bits");
}

void TestDownloadRecordsDecoding::timesAndRates()
{
    const AbstractFileInfo file = AbstractFileInfo::fromVariantHash(
        hash({{"lastModified", QStringLiteral("1770091506007")},
              {"details", hash({{"fps", std::numeric_limits<double>::quiet_NaN()}})}}));
    QCOMPARE(file.lastModified, QDateTime(QDate(2026, 2, 3), QTime(4, 5, 6, 7), Qt::UTC));
    QCOMPARE(file.details.fps, 0);
    QVERIFY(!AbstractFileInfo::fromVariantHash(hash({{"lastModified", QStringLiteral("now")}}))
                 .lastModified.isValid());
}

void TestDownloadRecordsDecoding::wrongTypes_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::newRow("list") << QVariant(QVariantList{QVariant(), 1, QVariantList{1}});
    QTest::newRow("hash") << QVariant(hash({{"url", 1}, {"info", QByteArray("x")}}));
    QTest::newRow("bytes") << QVariant(QByteArray("\0\xff;=\n", 5));
    QTest::newRow("text") << QVariant(QStringLiteral("text"));
    QTest::newRow("pointer") << QVariant::fromValue<QObject *>(this);
    QTest::newRow("invalid") << QVariant();
    QTest::newRow("largest number") << QVariant(~quint64{0});
    QTest::newRow("infinity") << QVariant(std::numeric_limits<double>::infinity());
}

/// Every key of a request has the value. Nothing can be expected of what comes out of it, but that
/// it is a record like any other: it is encoded whole, and that form stands.
void TestDownloadRecordsDecoding::wrongTypes()
{
    QFETCH(const QVariant, value);
    const auto allSetTo = [&value](QVariantHash all) {
        for (QVariant &field : all)
            field = value;
        return all;
    };
    const QVariantHash allKeys = toVariantHash(AbstractDownloadPersistentInfo());
    QVariantHash info = allSetTo(allKeys);
    QVariantHash request = allSetTo(toVariantHash(AbstractNewDownloadsRequest()));
    request.insert(QStringLiteral("downloads"), QVariantList{hash({{"info", info}}), value});
    info.insert(QStringLiteral("source"), allSetTo(toVariantHash(AbstractDownloadSourceInfo())));
    info.insert(QStringLiteral("files"),
                QVariantList{allSetTo(AbstractDownloadFileInfo().toVariantHash()), value});

    for (const QVariantHash &hostile : {info, allSetTo(info)}) {
        const AbstractDownloadPersistentInfo decoded = toDownloadInfo(hostile);
        const QVariantHash encoded = toVariantHash(decoded);
        QCOMPARE(QSet<QString>(encoded.keyBegin(), encoded.keyEnd())
                     - QSet{QStringLiteral("tbu2c")},
                 QSet<QString>(allKeys.keyBegin(), allKeys.keyEnd()));
        QVERIFY(toDownloadInfo(encoded) == decoded);
    }
    const AbstractNewDownloadsRequest decoded = toNewDownloadsRequest(request);
    QCOMPARE(decoded.downloads.size(), 2);
    QVERIFY(decoded.selectedDownloads.size() >= 2);
    QVERIFY(toNewDownloadsRequest(toVariantHash(decoded)) == decoded);
}

void TestDownloadRecordsDecoding::hugeAndDeep()
{
    QVariant deep;
    for (int i = 0; i < 1000; ++i)
        deep = i % 2 == 0 ? QVariant(hash({{"info", deep}, {"source", deep}}))
                          : QVariant(QVariantList{deep});
    const QVariantHash info = hash({{"resumeData", deep}, {"mirrors", deep}, {"source", deep}});
    QCOMPARE(toDownloadInfo(info).resumeData.size(), 0); // a list at the top

    const QVariantList many(100'000, QVariant(-1));
    const AbstractDownloadPersistentInfo decoded = toDownloadInfo(
        hash({{"childrenDownloadsIds", many}, {"files", many}, {"subtitles", many}}));
    QCOMPARE(decoded.childrenDownloadsIds, QList<qint64>(100'000, -1));
    QCOMPARE(decoded.files, QList<AbstractDownloadFileInfo>(100'000));
    QCOMPARE(decoded.subtitles, QList<DownloadableSubtitlesInfo>(100'000));
}

QTEST_GUILESS_MAIN(TestDownloadRecordsDecoding)
#include "tst_downloadrecordsdecoding.moc"
