#include "abstractdownloadmergetaskoptions.h"
#include "abstractdownloadpreviewinfo.h"
#include "abstractdownloadruntimeinfo.h"
#include "abstractdownloadschedulerecord.h"
#include "abstractnewdownloadsrequestjob.h"
#include "downloaderrorallowedtoautoretry.h"
#include "downloadstagdetails.h"

#include <QTest>

namespace {

QVariantHash hash(std::initializer_list<std::pair<const char *, QVariant>> entries)
{
    QVariantHash result;
    for (const auto &[key, value] : entries)
        result.insert(QString::fromLatin1(key), value);
    return result;
}

/// Variants compare equal across number types; on the link the type counts too.
QString difference(const QVariant &actual, const QVariant &expected, const QString &place = {})
{
    if (actual.typeId() == QMetaType::QVariantHash
        && expected.typeId() == QMetaType::QVariantHash) {
        const QVariantHash a = actual.toHash();
        const QVariantHash e = expected.toHash();
        QSet<QString> keys(a.keyBegin(), a.keyEnd());
        keys.unite(QSet<QString>(e.keyBegin(), e.keyEnd()));
        for (const QString &key : std::as_const(keys)) {
            QString inner = difference(a.value(key), e.value(key), place + u'/' + key);
            if (!inner.isEmpty())
                return inner;
        }
        return {};
    }
    if (actual.typeId() == QMetaType::QVariantList && expected.typeId() == QMetaType::QVariantList
        && actual.toList().size() == expected.toList().size()) {
        for (qsizetype i = 0; i < actual.toList().size(); ++i) {
            QString inner = difference(actual.toList().at(i), expected.toList().at(i),
                                       place + u'/' + QString::number(i));
            if (!inner.isEmpty())
                return inner;
        }
        return {};
    }
    if (actual.typeId() == expected.typeId() && actual == expected)
        return {};
    QString text;
    QDebug(&text) << place << "is" << actual << "and not" << expected;
    return text;
}

/// 1'770'091'506'007 ms since the epoch.
QDateTime moment() { return QDateTime(QDate(2026, 2, 3), QTime(4, 5, 6, 7), Qt::UTC); }

AbstractDownloadSourceInfo makeSource()
{
    AbstractDownloadSourceInfo source;
    source.url = QUrl(QStringLiteral("https://example.org/a.zip"));
    source.referer = QStringLiteral("https://example.org/");
    source.cookies = {QNetworkCookie("a", "1"), QNetworkCookie("b", "2=3")};
    source.cookies.first().setPath(QStringLiteral("/p"));
    source.cookies.first().setSecure(true);
    source.postData = QByteArray("x\0y", 3);
    source.webPageUrl = QUrl(QStringLiteral("https://example.org/page"));
    source.customData = hash({{"k", 1}});
    source.flags = 0x80000001;
    return source;
}

QVariantHash sourceHash()
{
    return hash({{"url", QUrl(QStringLiteral("https://example.org/a.zip"))},
                 {"referer", QStringLiteral("https://example.org/")},
                 {"cookies", QByteArray("a=1; secure; path=/p\nb=2=3")},
                 {"postData", QByteArray("x\0y", 3)},
                 {"webPageUrl", QUrl(QStringLiteral("https://example.org/page"))},
                 {"customData", hash({{"k", 1}})},
                 {"flags", 0x80000001U}});
}

QVariantHash emptySourceHash()
{
    return hash({{"url", QUrl()},
                 {"referer", QString()},
                 {"cookies", QByteArray()},
                 {"postData", QByteArray()},
                 {"webPageUrl", QUrl()},
                 {"customData", QVariantHash()},
                 {"flags", 0U}});
}

QVariantHash errorHash(int code, const QString &text)
{
    return hash({{"code", code}, {"category", text}, {"source", text}, {"description", text}});
}

QVariantHash emptyDescriptionHash()
{
    return hash({{"title", QString()},
                 {"filesTypes", QVariantList()},
                 {"previewImageUrl", QUrl()},
                 {"mediaDurationHr", QString()},
                 {"ageHr", QString()}});
}

QVariantHash emptyInfoHash()
{
    return hash({{"originatorsNamesChain", QStringList()},
                 {"uuid", QUuid()},
                 {"guid", QVariantHash()},
                 {"moduleUid", QString()},
                 {"createdBy", 0},
                 {"flags", quint64{0}},
                 {"parentDownloadId", qint64{0}},
                 {"childrenDownloadsIds", QVariantList()},
                 {"desc", emptyDescriptionHash()},
                 {"source", emptySourceHash()},
                 {"destination", hash({{"type", 0}, {"path", QString()}, {"data", QByteArray()}})},
                 {"mirrors", QVariantList()},
                 {"title", QString()},
                 {"creationTime", QDateTime()},
                 {"finishedTime", QDateTime()},
                 {"resumeData", QVariantHash()},
                 {"lastError", errorHash(0, QString())},
                 {"lastErrorTime", QDateTime()},
                 {"resumeSupport", 0},
                 {"files", QVariantList()},
                 {"allFilesType", 0},
                 {"priority", 2},
                 {"supportedOptions", quint64{0}},
                 {"userAgent", QString()},
                 {"preferredFileTitle", QString()},
                 {"subtitles", QVariantList()},
                 {"launchableFileIndex", -1},
                 {"existingFileReaction", 0},
                 {"order", qint64{-1}}});
}

AbstractDownloadFileInfo makeFile()
{
    AbstractDownloadFileInfo file;
    file.originType = 1;
    file.details.type = AbstractFileType::Video;
    file.details.contentType = QStringLiteral("video/mp4");
    file.details.width = 640;
    file.details.bitrate = 5'000'000'000;
    file.details.fps = 29.97;
    file.path = QStringLiteral("a.mp4");
    file.size = 4'294'967'296;
    file.lastModified = moment();
    file.priority = AbstractDownloadPriority::High;
    file.sections = {{1, 2, 3}};
    file.writeOffset = 5;
    file.tmpPath = QStringLiteral("a.part");
    file.flags = 7;
    return file;
}

QVariantHash fileHash()
{
    return hash(
        {{"originType", 1},
         {"details",
          hash({{"type", 1},
                {"contentType", QStringLiteral("video/mp4")},
                {"format", QString()},
                {"width", 640},
                {"height", 0},
                {"bitrate", qint64{5'000'000'000}},
                {"fps", 29.97},
                {"duration", qint64{0}}})},
         {"path", QStringLiteral("a.mp4")},
         {"size", qint64{4'294'967'296}},
         {"lastModified", qint64{1'770'091'506'007}},
         {"priority", 3},
         {"sections",
          QVariantList{hash({{"offset", qint64{1}}, {"size", qint64{2}}, {"done", qint64{3}}})}},
         {"writeOffset", qint64{5}},
         {"tmpPath", QStringLiteral("a.part")},
         {"flags", 7U}});
}

AbstractNewDownloadRequest makeRequest(const QString &title)
{
    AbstractNewDownloadRequest request{std::make_shared<AbstractDownloadPersistentInfo>()};
    request.info->title = title;
    return request;
}

} // namespace

class TestDownloadRecordsEncoding : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void encoding_data();
    void encoding();
    void persistentInfo();
    void newDownloadsRequest();
};

void TestDownloadRecordsEncoding::encoding_data()
{
    QTest::addColumn<QVariant>("encoded");
    QTest::addColumn<QVariant>("expected");
    QTest::newRow("source") << QVariant(toVariantHash(makeSource())) << QVariant(sourceHash());
    QTest::newRow("mirrors") << toVariant(QList<AbstractDownloadMirrorInfo>{{makeSource()}, {}})
                             << QVariant(QVariantList{hash({{"source", sourceHash()}}),
                                                      hash({{"source", emptySourceHash()}})});
    QTest::newRow("guid")
        << QVariant(toVariantHash(AbstractDownloadGuid{1, 2, QStringLiteral("id")}))
        << QVariant(hash({{"guidType", 1}, {"type", 2}, {"guid", QStringLiteral("id")}}));
    QTest::newRow("guid without its text")
        << QVariant(toVariantHash(AbstractDownloadGuid{1, 2, {}})) << QVariant(QVariantHash());
    AbstractDownloadResourceDescription description;
    description.filesTypes = {AbstractFileType::Music, static_cast<AbstractFileType>(1LL << 40)};
    description.ageHr = QStringLiteral("1 day");
    QVariantHash descriptionHash = emptyDescriptionHash();
    descriptionHash.insert(QStringLiteral("filesTypes"),
                           QVariantList{qint64{2}, qint64{1'099'511'627'776}});
    descriptionHash.insert(QStringLiteral("ageHr"), QStringLiteral("1 day"));
    QTest::newRow("description") << QVariant(toVariantHash(description))
                                 << QVariant(descriptionHash);
    QTest::newRow("file") << QVariant(makeFile().toVariantHash()) << QVariant(fileHash());
    QTest::newRow("files alone") << QVariant(filesInfosToHash({makeFile()}))
                                 << QVariant(hash({{"files", QVariantList{fileHash()}}}));
    QTest::newRow("subtitles") << toVariant(
        DownloadableSubtitlesInfo{QStringLiteral("cs"), QStringLiteral("čeština"), {}})
                               << QVariant(hash({{"languageCode", QStringLiteral("cs")},
                                                 {"languageName", QStringLiteral("čeština")},
                                                 {"url", QUrl()}}));
    QTest::newRow("tags") << toVariant(
        QList<DownloadsTagDetails>{{QStringList{QStringLiteral("zip")}, QStringLiteral("/d")}})
                          << QVariant(QVariantList{
                                 hash({{"defaultExtensions", QStringList{QStringLiteral("zip")}},
                                       {"defaultDownloadFolder", QStringLiteral("/d")}})});
    QTest::newRow("errors to retry")
        << toVariant(QSet<DownloadErrorAllowedToAutoRetry>{{QStringLiteral("c"), 4}})
        << QVariant(QVariantList{hash({{"category", QStringLiteral("c")}, {"code", 4}})});
    QTest::newRow("preview") << QVariant(
        toVariantHash(AbstractDownloadPreviewInfo{QStringLiteral("s"), QStringLiteral("l"), 1}))
                             << QVariant(hash({{"smallPreviewId", QStringLiteral("s")},
                                               {"largePreviewId", QStringLiteral("l")},
                                               {"flags", 1U}}));
    QTest::newRow("schedule")
        << QVariant(toVariantHash(AbstractDownloadScheduleRecord{0b1000001, 3600, 7200}))
        << QVariant(hash({{"days", 65}, {"fromTime", 3600}, {"toTime", 7200}}));
    QTest::newRow("merge task") << QVariant(toVariantHash(
        AbstractDownloadMergeTaskOptions{{{AbstractDownloadOption::Cookies}}, false, true, false}))
                                << QVariant(
                                       hash({{"mo", hash({{"options", QVariantList{qint64{2}}}})},
                                             {"dontMergeJustAddNew", false},
                                             {"restart", true},
                                             {"start", false}}));
    AbstractDownloadRunTimeInfo runTime;
    runTime.live.downloadSpeed = 10;
    runTime.live.tasks = QStringList{QStringLiteral("check")};
    runTime.live.tasksProgress = {50};
    runTime.live.connections = {{{QStringLiteral("h"), 443}, 2}};
    runTime.loi = {true, 1, 2, AbstractError(3, "é", "é", "é"), moment()};
    runTime.allFilesTypes = {AbstractFileType::Image};
    runTime.storageId = QStringLiteral("disk");
    QTest::newRow("run time")
        << QVariant(toVariantHash(runTime))
        << QVariant(
               hash({{"live",
                      hash({{"downloadSpeed", qint64{10}},
                            {"uploadSpeed", qint64{0}},
                            {"payloadDownloadSpeed", qint64{0}},
                            {"payloadUploadSpeed", qint64{0}},
                            {"running", false},
                            {"stopping", false},
                            {"tasks", QStringList{QStringLiteral("check")}},
                            {"tasksProgress", QVariantList{50}},
                            {"connections",
                             QVariantList{hash(
                                 {{"host", QStringLiteral("h")}, {"port", 443U}, {"count", 2}})}},
                            {"details", QVariantHash()}})},
                     {"flags", 0U},
                     {"lockReason", 0},
                     {"loi",
                      hash({{"running", true},
                            {"currentProgress", 1},
                            {"totalProgress", 2},
                            {"error", errorHash(3, QStringLiteral("é"))},
                            {"errorTime", moment()}})},
                     {"allFilesTypes", QVariantList{qint64{4}}},
                     {"forbidAutoRetryCount", 0},
                     {"storageId", QStringLiteral("disk")}}));
}

void TestDownloadRecordsEncoding::encoding()
{
    QFETCH(const QVariant, encoded);
    QFETCH(const QVariant, expected);
    QCOMPARE(difference(encoded, expected), QString());
}

void TestDownloadRecordsEncoding::persistentInfo()
{
    QCOMPARE(difference(toVariantHash(AbstractDownloadPersistentInfo()), emptyInfoHash()),
             QString());

    AbstractDownloadPersistentInfo info;
    info.uuid = QUuid(QStringLiteral("{01234567-89ab-cdef-0123-456789abcdef}"));
    info.createdBy = AbstractDownloadCreatedBy::Browser;
    info.flags = ~quint64{0};
    info.childrenDownloadsIds = {-5};
    info.source = makeSource();
    info.creationTime = moment();
    info.files = {makeFile()};
    info.tbu2c = -1;
    info.order = 3;
    QVariantHash expected = emptyInfoHash();
    expected.insert(hash({{"uuid", info.uuid},
                          {"createdBy", 2},
                          {"flags", quint64{18'446'744'073'709'551'615U}},
                          {"childrenDownloadsIds", QVariantList{qint64{-5}}},
                          {"source", sourceHash()},
                          {"creationTime", moment()},
                          {"files", QVariantList{fileHash()}},
                          {"tbu2c", qint64{-1}},
                          {"order", qint64{3}}}));
    QCOMPARE(difference(toVariantHash(info), expected), QString());
}

void TestDownloadRecordsEncoding::newDownloadsRequest()
{
    AbstractNewDownloadsRequestJob job;
    job.id = 5;
    job.request.downloads = {makeRequest(QStringLiteral("x")), {}};
    job.request.selectedDownloads.resize(3);
    job.request.selectedDownloads.setBit(1);
    job.request.flags = -1;
    job.request.source = AbstractNewDownloadsRequestSource::Browser;
    job.request.preferredDownloadType = AbstractDownloadType::MediaStream;
    QVariantHash info = emptyInfoHash();
    info.insert(QStringLiteral("title"), QStringLiteral("x"));
    const QVariantHash expected =
        hash({{"downloads", QVariantList{hash({{"info", info}}), QVariantHash()}},
              {"selectedDownloads", QByteArray("\0\1\0", 3)},
              {"flags", -1},
              {"source", 2},
              {"preferredDownloadType", 4}});
    QCOMPARE(difference(toVariantHash(job), expected), QString());
}

QTEST_GUILESS_MAIN(TestDownloadRecordsEncoding)
#include "tst_downloadrecordsencoding.moc"
