#include "abstractdownloadmergetaskoptions.h"
#include "abstractdownloadpreviewinfo.h"
#include "abstractdownloadruntimeinfo.h"
#include "abstractdownloadschedulerecord.h"
#include "abstractnewdownloadsrequestjob.h"
#include "downloaderrorallowedtoautoretry.h"
#include "downloadstagdetails.h"
#include "encodedrecord.h"

#include <QRandomGenerator>
#include <QTest>

namespace {

/// The entries by key, each with its type (unless it is a text), which counts on the link as much
/// as its value. Records in the record are "{}": they are described themselves.
QString described(const QVariant &value, int depth = 0)
{
    QStringList parts;
    if (value.typeId() == QMetaType::QVariantHash) {
        const QVariantHash hash = value.toHash();
        for (auto it = hash.cbegin(); it != hash.cend() && depth == 0; ++it)
            parts += it.key() + u": "_qs + described(*it, depth + 1);
        parts.sort();
        return u'{' + parts.join(u", "_qs) + u'}';
    }
    if (value.typeId() == QMetaType::QVariantList) {
        const QVariantList list = value.toList();
        for (const QVariant &element : list)
            parts += described(element, depth);
        return u'[' + parts.join(u", "_qs) + u']';
    }
    const bool isBytes = value.typeId() == QMetaType::QByteArray;
    QString text = value.typeId() == QMetaType::QStringList ? value.toStringList().join(u'|')
        : isBytes ? QString::fromLatin1(value.toByteArray().toPercentEncoding(" ;="))
                  : value.toString();
    if (value.typeId() == QMetaType::QString)
        return text;
    return QString::fromLatin1(value.typeName()) + (text.isEmpty() ? text : u' ' + text);
}

/// A variant of the same shape with other values; lists have one element or none.
QVariant refilled(const QVariant &sample, QRandomGenerator &random)
{
    const quint64 number = random.generate64();
    const QString text = u"ě\n%1 😀"_qs.arg(number, 0, 36);
    const QVariant values[] = {
        number % 2 == 1,
        static_cast<int>(number),
        static_cast<uint>(number & 0xffff), // it may be a port
        static_cast<qint64>(number >> 22), // it may be a time
        number,
        static_cast<double>(number % 1000) / 8,
        text,
        text.toUtf8(),
        QUrl(u"https://h.example.org/a%20b?q=%C4%9B#%1"_qs.arg(number)),
        QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(number >> 22), Qt::UTC),
        QUuid(static_cast<uint>(number), 1, 2, 3, 4, 5, 6, 7, 8, 9, 10),
        QStringList{text, QString()},
    };
    for (const QVariant &value : values)
        if (value.typeId() == sample.typeId())
            return value;
    if (sample.typeId() == QMetaType::QVariantList) {
        const QVariant element = refilled(sample.toList().constFirst(), random);
        return number % 2 == 1 ? QVariantList{element} : QVariantList{};
    }
    QVariantHash hash = sample.toHash();
    for (auto it = hash.begin(); it != hash.end(); ++it) {
        // Bytes of a form of their own.
        if (it.key() != u"cookies" && it.key() != u"selectedDownloads")
            *it = refilled(*it, random);
    }
    return hash;
}

/// The record, which has no empty list, is encoded as expected; it and records filled at random
/// come back as they were.
template <typename Record, typename Argument>
void check(Record (*decode)(const Argument &), const Record &record, const QString &expected)
{
    const Argument sample = encoded(record);
    QCOMPARE(described(sample), expected);
    QVERIFY2(decode(sample) == record, qPrintable(expected));
    for (quint32 seed = 1; seed <= 300; ++seed) {
        QRandomGenerator random(seed);
        const QVariant filled = refilled(sample, random);
        const Record first = decode(filled.value<Argument>());
        const QVariant again = QVariant::fromValue<Argument>(encoded(first));
        const QByteArray place = u"seed %1, %2"_qs.arg(seed).arg(expected).toUtf8();
        QVERIFY2(again == filled, place);
        QVERIFY2(decode(encoded(first)) == first, place);
    }
}
template <typename Record>
void check(Record (*decode)(const QVariant &), const Record &record, const QString &expected)
{
    check<Record, QVariant>(decode, record, expected);
}

QDateTime moment() { return QDateTime(QDate(2026, 2, 3), QTime(4, 5, 6, 7), Qt::UTC); }

AbstractDownloadSourceInfo makeSource()
{
    QNetworkCookie cookie("a", "1");
    cookie.setPath(u"/p"_qs);
    cookie.setSecure(true);
    return {QUrl(u"https://h/a.zip"_qs),
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
                                      5'000'000'000,           29.97,           9};
    return {{1, details, u"a.mp4"_qs, 1LL << 32, moment()},
            AbstractDownloadPriority::High,
            {{1, 2, 3}},
            5,
            u"a.part"_qs,
            7};
}

AbstractLiveDownloadRunTimeInfo makeLive()
{
    return {1, 2, 3, 4, true, false, {u"check"_qs}, {50}, {{{u"h"_qs, 443}, 2}}, {{u"k"_qs, 1}}};
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
    info.parentDownloadId = 6;
    info.childrenDownloadsIds = {-5};
    info.desc.filesTypes = {AbstractFileType::Music};
    info.source = makeSource();
    info.mirrors = {{makeSource()}};
    info.title = u"t"_qs;
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
    void records()
    {
        const AbstractDownloadFileInfo file = makeFile();
        check(toDownloadSourceInfo, makeSource(),
              u"{cookies: QByteArray a=1; secure; path=%2Fp%0Ab=2=3, customData: {}, flags: uint "
              "2147483649, postData: QByteArray x%00y, referer: https://h/, url: QUrl "
              "https://h/a.zip, webPageUrl: QUrl https://h/page}"_qs);
        check(toDownloadGuid, {1, 2, u"id"_qs}, u"{guid: id, guidType: int 1, type: int 2}"_qs);
        check(toDownloadDestination, {1, u"/d"_qs, "x"},
              u"{data: QByteArray x, path: /d, type: int 1}"_qs);
        check(
            toDownloadResourceDesc,
            {u"t"_qs,
             {AbstractFileType::Music, AbstractFileType(1LL << 40)},
             {},
             u"1:00"_qs,
             u"1 day"_qs},
            u"{ageHr: 1 day, filesTypes: [qlonglong 2, qlonglong 1099511627776], mediaDurationHr: "
            "1:00, previewImageUrl: QUrl, title: t}"_qs);
        check(AbstractFileDetails::fromVariantHash, file.details,
              u"{bitrate: qlonglong 5000000000, contentType: video/mp4, duration: qlonglong 9, "
              "format: mp4, fps: double 29.97, height: int 480, type: int 1, width: int 640}"_qs);
        check(AbstractDownloadSection::fromVariantHash, {1, 2, 3},
              u"{done: qlonglong 3, offset: qlonglong 1, size: qlonglong 2}"_qs);
        check(
            AbstractDownloadFileInfo::fromVariantHash, file,
            u"{details: {}, flags: uint 7, lastModified: qlonglong 1770091506007, originType: int "
            "1, path: a.mp4, priority: int 3, sections: [{}], size: qlonglong 4294967296, "
            "tmpPath: a.part, writeOffset: qlonglong 5}"_qs);
        check(toDownloadableSubtitlesInfo, {u"cs"_qs, u"čeština"_qs, {}},
              u"{languageCode: cs, languageName: čeština, url: QUrl}"_qs);
        check(toDownloadsTagDetails, {{u"zip"_qs, u"7z"_qs}, u"/d"_qs},
              u"{defaultDownloadFolder: /d, defaultExtensions: QStringList zip|7z}"_qs);
        check(toDownloadsErrorsAllowedToAutoRetry, {{u"c"_qs, 4}},
              u"[{category: c, code: int 4}]"_qs);
        check(toDownloadPreviewInfo, {u"s"_qs, u"l"_qs, 1},
              u"{flags: uint 1, largePreviewId: l, smallPreviewId: s}"_qs);
        check(toDownloadScheduleRecord, {65, 3600, 7200},
              u"{days: int 65, fromTime: int 3600, toTime: int 7200}"_qs);
        check(toDownloadMergeOptions, {{AbstractDownloadOption::Cookies}},
              u"{options: [qlonglong 2]}"_qs);
        check(
            toDownloadMergeTaskOptions, {{{AbstractDownloadOption::Cookies}}, false, true, false},
            u"{dontMergeJustAddNew: bool false, mo: {}, restart: bool true, start: bool false}"_qs);
        const AbstractLockedDownloadOperationInfo operation{
            true, 1, 2, AbstractError(3, "é", "s", "d"), moment()};
        check(toLockedDownloadOperationInfo, operation,
              u"{currentProgress: int 1, error: {}, errorTime: QDateTime 2026-02-03T04:05:06.007Z, "
              "running: bool true, totalProgress: int 2}"_qs);
        check(toConnectionsMap, {{{u"h"_qs, 443}, 2}},
              u"[{count: int 2, host: h, port: uint 443}]"_qs);
        check(
            toLiveDownloadRunTimeInfo, makeLive(),
            u"{connections: [{}], details: {}, downloadSpeed: qlonglong 1, payloadDownloadSpeed: "
            "qlonglong 3, payloadUploadSpeed: qlonglong 4, running: bool true, stopping: bool "
            "false, tasks: QStringList check, tasksProgress: [int 50], uploadSpeed: qlonglong 2}"_qs);
        check(
            toDownloadRunTimeInfo,
            {makeLive(), 1, 2, operation, {AbstractFileType::Image}, 3, u"disk"_qs},
            u"{allFilesTypes: [qlonglong 4], flags: uint 1, forbidAutoRetryCount: int 3, live: {}, "
            "lockReason: int 2, loi: {}, storageId: disk}"_qs);
    }

    void requests()
    {
        check(
            toDownloadInfo, makeInfo(),
            u"{allFilesType: int 0, childrenDownloadsIds: [qlonglong -5], createdBy: int 2, "
            "creationTime: QDateTime 2026-02-03T04:05:06.007Z, desc: {}, destination: {}, "
            "existingFileReaction: int 0, files: [{}], finishedTime: QDateTime, flags: qulonglong "
            "18446744073709551615, guid: {}, lastError: {}, lastErrorTime: QDateTime, "
            "launchableFileIndex: int -1, mirrors: [{}], moduleUid: m, order: qlonglong -1, "
            "originatorsNamesChain: QStringList o|p, parentDownloadId: qlonglong 6, "
            "preferredFileTitle: "
            "p, priority: int 2, resumeData: {}, resumeSupport: int 0, source: {}, subtitles: "
            "[{}], supportedOptions: qulonglong 0, tbu2c: qlonglong -1, title: t, userAgent: u, "
            "uuid: QUuid {01234567-89ab-cdef-0123-456789abcdef}}"_qs);
        const AbstractNewDownloadRequest one{
            std::make_shared<AbstractDownloadPersistentInfo>(makeInfo())};
        check(toNewDownloadRequest, one, u"{info: {}}"_qs);
        QBitArray selected(3);
        selected.setBit(1);
        const AbstractNewDownloadsRequest request{{one},
                                                  selected,
                                                  -1,
                                                  AbstractNewDownloadsRequestSource::Browser,
                                                  AbstractDownloadType::MediaStream};
        check(toNewDownloadsRequest, request,
              u"{downloads: [{}], flags: int -1, preferredDownloadType: int 4, selectedDownloads: "
              "QByteArray %00%01%00, source: int 2}"_qs);
        // The id of a job travels in the message, not in the request.
        QCOMPARE(toVariantHash(AbstractNewDownloadsRequestJob{5, request}), toVariantHash(request));
        QCOMPARE(filesInfosToHash({makeFile()}),
                 (QVariantHash{{u"files"_qs, toVariantList({makeFile()})}}));
    }

    void whatIsMissing()
    {
        QVERIFY(toVariantHash(AbstractNewDownloadRequest()).isEmpty());
        const AbstractNewDownloadRequest decoded = toNewDownloadRequest({});
        QVERIFY(decoded.info && *decoded.info == AbstractDownloadPersistentInfo());
        QVERIFY(!toVariantHash(*decoded.info).contains(u"tbu2c"_qs));
        QVERIFY(toVariantHash(AbstractDownloadGuid{1, 2, {}}).isEmpty());
        QVERIFY(!AbstractFileInfo().toVariantHash().contains(u"lastModified"_qs));
        QVERIFY(!AbstractFileInfo::fromVariantHash({}).lastModified.isValid());
        // A cookie without a name is none.
        AbstractDownloadSourceInfo source;
        source.cookies = {QNetworkCookie("a", "1"), QNetworkCookie(), QNetworkCookie("b", "2")};
        QCOMPARE(toDownloadSourceInfo(toVariantHash(source)).cookies,
                 (QList<QNetworkCookie>{QNetworkCookie("a", "1"), QNetworkCookie("b", "2")}));
    }

    void oddNumbers()
    {
        const auto numbers = [](const QVariant &priority, const QVariant &index,
                                const QVariant &order) {
            const AbstractDownloadPersistentInfo info =
                toDownloadInfo({{u"priority"_qs, priority},
                                {u"launchableFileIndex"_qs, index},
                                {u"order"_qs, order}});
            return QList<qint64>{qint64(info.priority), info.launchableFileIndex, info.order};
        };
        using Numbers = QList<qint64>;
        QCOMPARE(numbers(u"x"_qs, u"x"_qs, QVariantList()), (Numbers{0, -1, -1}));
        QCOMPARE(numbers(0, 0, 0), (Numbers{0, 0, 0}));
        QCOMPARE(numbers(77, u"4"_qs, u"4294967296"_qs), (Numbers{77, 4, 1LL << 32}));
        const AbstractFileInfo file = AbstractFileInfo::fromVariantHash(
            {{u"lastModified"_qs, u"1770091506007"_qs},
             {u"details"_qs, QVariantHash{{u"fps"_qs, qQNaN()}}}});
        QCOMPARE(file.lastModified, moment());
        QCOMPARE(file.details.fps, 0);
    }

    void selectionOfThree()
    {
        const auto selection = [](const QVariant &selected) {
            const AbstractNewDownloadsRequest request = toNewDownloadsRequest(
                {{u"downloads"_qs, QVariantList{1, 2, 3}}, {u"selectedDownloads"_qs, selected}});
            const QVariantHash hash = toVariantHash(request);
            return hash.value(u"selectedDownloads"_qs).toByteArray().toHex();
        };
        QBitArray bits(2);
        bits.setBit(1);
        QCOMPARE(selection({}), "010101");
        QCOMPARE(selection(QByteArray("\1\0\2", 3)), "010001");
        QCOMPARE(selection(QByteArray("\0", 1)), "000101");
        QCOMPARE(selection(QByteArray("\0\0\0\1\0", 5)), "0000000100");
        QCOMPARE(selection(bits), "000101");
        QCOMPARE(selection(u"\1\1"_qs), "010101");
    }
};

QTEST_GUILESS_MAIN(TestDownloadRecords)
#include "tst_downloadrecords.moc"
