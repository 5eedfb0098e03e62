#include "abstractdownloadmergetaskoptions.h"
#include "abstractdownloadpreviewinfo.h"
#include "abstractdownloadruntimeinfo.h"
#include "abstractdownloadschedulerecord.h"
#include "abstractnewdownloadsrequestjob.h"
#include "downloaderrorallowedtoautoretry.h"
#include "downloadstagdetails.h"
#include "encodedrecord.h"
#include "streameddownloads.h"

#include <QTest>

namespace {

/// The encoding of a record on the link, as text with types, which matter as much as the values.
QString described(const char *name, const QVariant &value)
{
    QString text;
    QDebug(&text).nospace() << name << '\n' << withSortedKeys(value);
    return text.replace(u")(\""_qs, u")\n(\""_qs);
}

QDateTime moment() { return QDateTime(QDate(2026, 2, 3), QTime(4, 5, 6, 7), Qt::UTC); }

AbstractDownloadSourceInfo makeSource()
{
    QNetworkCookie cookie("a", "1");
    cookie.setPath(u"/p"_qs);
    cookie.setSecure(true);
    return {QUrl(u"https://h/a%20b?q=%C4%9B#f"_qs),
            u"https://h/"_qs,
            {cookie, QNetworkCookie("b", "2=3")},
            QByteArray("x\0y", 3),
            QUrl(u"https://h/page"_qs),
            {{u"k"_qs, 1}},
            0x80000001};
}

AbstractDownloadFileInfo makeFile()
{
    const AbstractFileDetails details{AbstractFileType::Video, u"video/mp4"_qs, u"mp4"_qs, 640, 480,
                                      5'000'000'000,           29.97,           9LL << 32};
    return {{1, details, u"a.mp4"_qs, 1LL << 32, moment()},
            AbstractDownloadPriority::High,
            {{1LL << 33, 2LL << 34, 3LL << 35}},
            5LL << 36,
            u"a.part"_qs,
            7};
}

AbstractLiveDownloadRunTimeInfo makeLive()
{
    return {1LL << 32,     2LL << 33, 3LL << 34,
            4LL << 35,     true,      false,
            {u"check"_qs}, {50},      {{{u"h"_qs, 443}, 2}},
            {{u"k"_qs, 1}}};
}

AbstractDownloadPersistentInfo makeInfo()
{
    AbstractDownloadPersistentInfo info;
    info.originatorsNamesChain = {u"o"_qs, u"p"_qs};
    info.uuid = QUuid(u"{01234567-89ab-cdef-0123-456789abcdef}"_qs);
    info.guid = {1, 2, u"g"_qs};
    info.moduleUid = u"m"_qs;
    info.createdBy = AbstractDownloadCreatedBy::Browser;
    info.flags = ~quint64{0};
    info.parentDownloadId = 6LL << 32;
    info.childrenDownloadsIds = {-5LL << 33};
    info.desc.filesTypes = {AbstractFileType::Music};
    info.source = makeSource();
    info.mirrors = {{makeSource()}};
    info.title = u"ě\n😀"_qs;
    info.creationTime = moment();
    info.resumeData = {{u"k"_qs, 1}};
    info.lastError = AbstractError(3, "c", "s", "d");
    info.files = {makeFile()};
    info.tbu2c = -1;
    info.userAgent = u"u"_qs;
    info.preferredFileTitle = u"p"_qs;
    info.subtitles = {{u"cs"_qs, u"čeština"_qs, QUrl()}};
    return info;
}

} // namespace

class TestDownloadRecords : public QObject {
    Q_OBJECT
private Q_SLOTS:
    /// Each record is encoded as in downloadrecords.txt, and decodes to the same record.
    void records()
    {
        const AbstractDownloadFileInfo file = makeFile();
        check(toDownloadSourceInfo, makeSource());
        check(toDownloadGuid, {1, 2, u"id"_qs});
        check(toDownloadDestination, {1, u"/d"_qs, "x"});
        check(toDownloadResourceDesc,
              {u"t"_qs,
               {AbstractFileType::Music, AbstractFileType(1LL << 40)},
               {},
               u"1:00"_qs,
               u"1 day"_qs});
        check(AbstractFileDetails::fromVariantHash, file.details);
        check(AbstractDownloadSection::fromVariantHash, file.sections.constFirst());
        check(AbstractDownloadFileInfo::fromVariantHash, file);
        check(toDownloadableSubtitlesInfo, {u"cs"_qs, u"čeština"_qs, {}});
        check(toDownloadsTagDetails, {{u"zip"_qs, u"7z"_qs}, u"/d"_qs});
        check(toDownloadsErrorsAllowedToAutoRetry, {{u"c"_qs, 4}});
        check(toDownloadPreviewInfo, {u"s"_qs, u"l"_qs, 1});
        check(toDownloadScheduleRecord, {65, 3600, 7200});
        check(toDownloadMergeOptions, {{AbstractDownloadOption::Cookies}});
        check(toDownloadMergeTaskOptions,
              {{{AbstractDownloadOption::Cookies}}, false, true, false});
        const AbstractLockedDownloadOperationInfo operation{
            true, 1, 2, AbstractError(3, "é", "s", "d"), moment()};
        check(toLockedDownloadOperationInfo, operation);
        check(toConnectionsMap, {{{u"h"_qs, 443}, 2}});
        check(toLiveDownloadRunTimeInfo, makeLive());
        check(toDownloadRunTimeInfo,
              {makeLive(), 1, 2, operation, {AbstractFileType::Image}, 3, u"disk"_qs});
        check(toDownloadInfo, makeInfo());
        QBitArray selected(3);
        selected.setBit(1);
        const AbstractNewDownloadsRequest request{
            {{std::make_shared<AbstractDownloadPersistentInfo>(makeInfo())}},
            selected,
            -1,
            AbstractNewDownloadsRequestSource::Browser,
            AbstractDownloadType::MediaStream};
        check(toNewDownloadsRequest, request);
        // The id of a job is in the message, not in the request.
        QCOMPARE(toVariantHash(AbstractNewDownloadsRequestJob{5, request}), toVariantHash(request));
        QCOMPARE(filesInfosToHash({file}), (QVariantHash{{u"files"_qs, toVariantList({file})}}));

        QFile expected(QFINDTESTDATA("downloadrecords.txt"));
        QVERIFY(expected.open(QIODevice::ReadOnly));
        QCOMPARE(m_described.join(u"\n\n"_qs) + u'\n', QString::fromUtf8(expected.readAll()));
    }

    void whatIsMissing()
    {
        QVERIFY(toVariantHash(AbstractNewDownloadRequest()).isEmpty());
        const AbstractNewDownloadRequest decoded = toNewDownloadRequest({});
        QVERIFY(decoded.info && *decoded.info == AbstractDownloadPersistentInfo());
        QVERIFY(AbstractNewDownloadRequest() == AbstractNewDownloadRequest());
        QVERIFY(!(AbstractNewDownloadRequest() == decoded));
        QVERIFY(!toVariantHash(*decoded.info).contains(u"tbu2c"_qs));
        QVERIFY(toVariantHash(AbstractDownloadGuid{1, 2, {}}).isEmpty());
        QVERIFY(!AbstractFileInfo().toVariantHash().contains(u"lastModified"_qs));
        QVERIFY(!AbstractFileInfo::fromVariantHash({}).lastModified.isValid());
        // A cookie without a name is dropped.
        AbstractDownloadSourceInfo source;
        source.cookies = {QNetworkCookie("a", "1"), QNetworkCookie(), QNetworkCookie("b", "2")};
        QCOMPARE(toDownloadSourceInfo(toVariantHash(source)).cookies,
                 (QList<QNetworkCookie>{QNetworkCookie("a", "1"), QNetworkCookie("b", "2")}));
    }

    void oddNumbers()
    {
        using Numbers = QList<qint64>;
        const auto numbers = [](const QVariant &priority, const QVariant &index,
                                const QVariant &order) {
            const AbstractDownloadPersistentInfo info =
                toDownloadInfo({{u"priority"_qs, priority},
                                {u"launchableFileIndex"_qs, index},
                                {u"order"_qs, order}});
            return Numbers{qint64(info.priority), info.launchableFileIndex, info.order};
        };
        QCOMPARE(numbers(u"x"_qs, u"x"_qs, QVariantList()), (Numbers{0, -1, -1}));
        QCOMPARE(numbers(0, 0, 0), (Numbers{0, 0, 0}));
        QCOMPARE(numbers(77, u"4"_qs, u"4294967296"_qs), (Numbers{77, 4, 1LL << 32}));
        const AbstractFileInfo file = AbstractFileInfo::fromVariantHash(
            {{u"lastModified"_qs, u"1770091506007"_qs},
             {u"details"_qs, QVariantHash{{u"fps"_qs, qQNaN()}}}});
        QCOMPARE(file.lastModified, moment());
        QCOMPARE(file.details.fps, 0);
    }

    /// Encoded one after another, records equal their encoded hashes, whatever the previous record
    /// was.
    void streamed()
    {
        AbstractDownloadPersistentInfo other = makeInfo();
        other.source.customData = {{u"k"_qs, 1LL}};
        other.source.referer = u""_qs; // not null
        other.creationTime = moment().toOffsetFromUtc(3600);
        other.mirrors = {{other.source}};
        other.tbu2c = 0;
        other.source.cookies.removeLast();
        const QList<AbstractDownloadPersistentInfo> infos = {{},    makeInfo(), makeInfo(), other,
                                                             other, makeInfo(), {},         other};
        QList<AbstractNewDownloadRequest> downloads{{}};
        for (const auto &info : infos)
            downloads.append({std::make_shared<AbstractDownloadPersistentInfo>(info)});
        QVERIFY(isStreamedAsHashes(downloads));

        // The receiver decodes a message with them like one with the hashes.
        NewDownloadsEncoder encoder;
        for (const auto &download : downloads.mid(1))
            encoder.add(download);
        AbstractNewDownloadsRequestJob job;
        job.encodedDownloads = encoder.downloads();
        AbstractNewDownloadsRequest expected;
        expected.downloads = downloads.mid(1);
        expected.selectedDownloads.fill(true, 8);
        QCOMPARE(toNewDownloadsRequest(toVariantHash(job)), expected);
        AbstractNewDownloadsRequestJob plain;
        plain.request = expected;
        QCOMPARE(toNewDownloadsRequest(toEncodedVariantHash(plain)), expected);
    }

    void selectionOfThree()
    {
        const std::pair<QVariant, QByteArray> cases[] = {
            {{}, "010101"},
            {QByteArray("\1\0\2", 3), "010001"},
            {QByteArray("\0", 1), "000101"},
            {QByteArray("\0\0\0\1\0", 5), "0000000100"},
            {QBitArray(2), "000001"},
            {u"\1\1"_qs, "010101"}};
        for (const auto &[selected, bytes] : cases) {
            const AbstractNewDownloadsRequest request = toNewDownloadsRequest(
                {{u"downloads"_qs, QVariantList{1, 2, 3}}, {u"selectedDownloads"_qs, selected}});
            const QVariantHash hash = toVariantHash(request);
            QCOMPARE(hash.value(u"selectedDownloads"_qs).toByteArray().toHex(), bytes);
        }
    }

private:
    template <typename Record, typename Argument>
    void check(Record (*decode)(const Argument &), const Record &record)
    {
        const Argument hash = encoded(record);
        const char *const name = QMetaType::fromType<Record>().name();
        m_described += described(name, hash);
        QVERIFY2(decode(hash) == record, name);
    }
    template <typename Record> void check(Record (*decode)(const QVariant &), const Record &record)
    {
        check<Record, QVariant>(decode, record);
    }

    QStringList m_described;
};

QTEST_GUILESS_MAIN(TestDownloadRecords)
#include "tst_downloadrecords.moc"
