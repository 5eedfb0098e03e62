// Records filled at random come back equal from the hash that they were encoded into, directly and
// after the hash went over a stream as on the link.

#include "randomdownloadrecords.h"

#include <QDataStream>
#include <QTest>

namespace {

QVariant throughStream(const QVariant &variant)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setVersion(QDataStream::Qt_5_12);
    out << variant;
    QDataStream in(bytes);
    in.setVersion(QDataStream::Qt_5_12);
    QVariant received;
    in >> received;
    return received;
}

template <typename Record> auto encoded(const Record &record)
{
    if constexpr (requires { record.toVariantHash(); })
        return record.toVariantHash();
    else if constexpr (requires { toVariantHash(record); })
        return toVariantHash(record);
    else if constexpr (requires { toVariantList(record); })
        return toVariantList(record);
    else
        return toVariant(record);
}

/// A failed check names the record and the seed.
template <typename Record, typename Argument> void roundTrip(Record (*decode)(const Argument &))
{
    constexpr quint32 records = 300;
    quint32 unlikeDefault = 0;
    for (quint32 seed = 1; seed <= records; ++seed) {
        Record record{};
        RandomDownloadRecords(seed).fill(record);
        unlikeDefault += record == Record{} ? 0 : 1;
        const Argument argument = encoded(record);
        const auto place = [seed] {
            return QStringLiteral("%1, seed %2")
                .arg(QString::fromLatin1(QMetaType::fromType<Record>().name()))
                .arg(seed)
                .toLocal8Bit();
        };
        QVERIFY2(decode(argument) == record, place());
        const auto received = throughStream(argument).template value<Argument>();
        QVERIFY2(decode(received) == record, place());
    }
    QVERIFY(unlikeDefault > records / 2);
}
template <typename Record> void roundTrip(Record (*decode)(const QVariant &))
{
    roundTrip<Record, QVariant>(decode);
}

} // namespace

class TestDownloadRecordsRoundTrip : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void sources();
    void files();
    void runTime();
    void settings();
    void requests();
};

void TestDownloadRecordsRoundTrip::sources()
{
    roundTrip(toDownloadSourceInfo);
    roundTrip(toDownloadMirror);
    roundTrip(toDownloadMirrors);
    roundTrip(toDownloadGuid);
    roundTrip(toDownloadDestination);
    roundTrip(toDownloadResourceDesc);
}

void TestDownloadRecordsRoundTrip::files()
{
    roundTrip(AbstractFileDetails::fromVariantHash);
    roundTrip(AbstractFileInfo::fromVariantHash);
    roundTrip(AbstractDownloadSection::fromVariantHash);
    roundTrip(AbstractDownloadFileInfo::fromVariantHash);
    roundTrip(toDownloadFilesInfos);
    roundTrip(toDownloadableSubtitlesInfo);
    roundTrip(toDownloadableSubtitlesInfos);
}

void TestDownloadRecordsRoundTrip::runTime()
{
    roundTrip(toDownloadPreviewInfo);
    roundTrip(toLockedDownloadOperationInfo);
    roundTrip(toConnectionsMap);
    roundTrip(toLiveDownloadRunTimeInfo);
    roundTrip(toDownloadRunTimeInfo);
}

void TestDownloadRecordsRoundTrip::settings()
{
    roundTrip(toDownloadScheduleRecord);
    roundTrip(toDownloadsTagDetails);
    roundTrip(toDownloadErrorAllowedToAutoRetry);
    roundTrip(toDownloadsErrorsAllowedToAutoRetry);
    roundTrip(toDownloadMergeOptions);
    roundTrip(toDownloadMergeTaskOptions);
}

void TestDownloadRecordsRoundTrip::requests()
{
    roundTrip(toDownloadInfo);
    roundTrip(toNewDownloadRequest);
    roundTrip(toNewDownloadsRequest);
}

QTEST_GUILESS_MAIN(TestDownloadRecordsRoundTrip)
#include "tst_downloadrecordsroundtrip.moc"
