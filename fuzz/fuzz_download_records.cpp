// Each decoder of a download record, with an arbitrary variant: the first byte selects the decoder,
// the rest describes the variant. A decoded record must be encodable, and from the second time on,
// decoding and encoding must not change it.

#include "abstractdownloadmergetaskoptions.h"
#include "abstractdownloadpreviewinfo.h"
#include "abstractdownloadruntimeinfo.h"
#include "abstractdownloadschedulerecord.h"
#include "abstractnewdownloadsrequest.h"
#include "downloaderrorallowedtoautoretry.h"
#include "downloadstagdetails.h"
#include "encodedrecord.h"
#include "streameddownloads.h"

#include <QVariantMap>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <limits>

namespace {

/// Builds variants from bytes. At the end of the bytes, every choice is the first one.
class VariantBuilder {
public:
    VariantBuilder(const std::uint8_t *data, std::size_t size)
        : m_next(data), m_end(data + size) { }

    unsigned byte() { return m_next == m_end ? 0 : *m_next++; }

    QVariant variant(int depth = 0)
    {
        switch (byte() % 20) {
        case 0:
            return {};
        case 1:
            return QVariant(byte() % 2 == 1);
        case 2:
            return QVariant(static_cast<int>(number()));
        case 3:
            return QVariant(static_cast<unsigned>(number()));
        case 4:
            return QVariant(number());
        case 5:
            return QVariant(static_cast<qulonglong>(number()));
        case 6:
            return QVariant(realNumber());
        case 7:
            return QVariant(QString::fromUtf8(bytes()));
        case 8:
            return QVariant(bytes());
        case 9:
            return QVariant(QUrl(QString::fromUtf8(bytes())));
        case 10:
            return QVariant(QDateTime::fromMSecsSinceEpoch(number(), Qt::UTC));
        case 11:
            return QVariant(QUuid(static_cast<uint>(number()), 1, 2, 3, 4, 5, 6, 7, 8, 9, 10));
        case 12:
            return QVariant(QBitArray::fromBits("\x35\xff", static_cast<int>(byte() % 17)));
        case 13:
            return QVariant(QStringList(static_cast<int>(byte() % 4), QString::fromUtf8(bytes())));
        case 14:
            return QVariant(QVariantList(static_cast<int>(byte()), scalar(depth)));
        case 15:
            return QVariant(map(depth));
        case 16:
            return QVariant::fromValue<void *>(nullptr);
        case 17:
            return QVariant(list(depth));
        default:
            return QVariant(hash(depth));
        }
    }

private:
    static constexpr int deepest = 12;

    QVariant scalar(int depth) { return depth < deepest ? variant(depth + 1) : QVariant(number()); }

    QVariantList list(int depth)
    {
        QVariantList list;
        for (unsigned count = depth < deepest ? byte() % 8 : 0; count > 0; --count)
            list.append(variant(depth + 1));
        return list;
    }

    QVariantHash hash(int depth)
    {
        QVariantHash hash;
        for (unsigned count = depth < deepest ? byte() % 32 : 0; count > 0; --count) {
            const QString entryKey = key();
            hash.insert(entryKey, variant(depth + 1));
        }
        return hash;
    }

    QVariantMap map(int depth)
    {
        const QVariantHash source = hash(depth);
        QVariantMap map;
        for (auto it = source.cbegin(); it != source.cend(); ++it)
            map.insert(it.key(), it.value());
        return map;
    }

    QString key()
    {
        static const QStringList known = knownKeys();
        const auto choice = static_cast<qsizetype>(byte());
        return choice < known.size() ? known[choice] : QString::fromUtf8(bytes());
    }

    /// The keys of all records, in a stable order.
    static QStringList knownKeys()
    {
        QStringList keys{QStringLiteral("info"), QStringLiteral("guidType"), QStringLiteral("guid"),
                         QStringLiteral("lastModified"), QStringLiteral("tbu2c")};
        const auto add = [&keys](const QVariantHash &hash) { keys += hash.keys(); };
        add(toVariantHash(AbstractNewDownloadsRequest()));
        add(toVariantHash(AbstractDownloadPersistentInfo()));
        add(toVariantHash(AbstractDownloadSourceInfo()));
        add(toVariantHash(AbstractDownloadDestination()));
        add(toVariantHash(AbstractDownloadResourceDescription()));
        add(AbstractDownloadFileInfo().toVariantHash());
        add(AbstractFileDetails().toVariantHash());
        add(AbstractDownloadSection().toVariantHash());
        add(toVariantHash(AbstractDownloadRunTimeInfo()));
        add(toVariantHash(AbstractLiveDownloadRunTimeInfo()));
        add(toVariantHash(AbstractLockedDownloadOperationInfo()));
        add(toVariantHash(AbstractDownloadPreviewInfo()));
        add(toVariantHash(AbstractDownloadScheduleRecord()));
        add(toVariantHash(AbstractDownloadMergeTaskOptions()));
        add(toVariant(DownloadableSubtitlesInfo()).toHash());
        add(toVariant(DownloadsTagDetails()).toHash());
        add(toVariant(DownloadErrorAllowedToAutoRetry()).toHash());
        add(toVariant(QtConnectionsMap{{{}, 0}}).toList().first().toHash());
        add(toContainer<QVariantHash>(AbstractError()));
        keys.removeDuplicates();
        keys.sort();
        return keys;
    }

    qlonglong number()
    {
        switch (byte() % 5) {
        case 0:
            return static_cast<qlonglong>(byte());
        case 1:
            return -1;
        case 2:
            return std::numeric_limits<qlonglong>::max();
        case 3:
            return std::numeric_limits<qlonglong>::min();
        default:
            return qlonglong{1} << (byte() % 63);
        }
    }

    double realNumber()
    {
        constexpr double infinity = std::numeric_limits<double>::infinity();
        switch (byte() % 3) {
        case 0:
            return static_cast<double>(number()) / 7;
        case 1:
            return infinity;
        default:
            return -infinity;
        }
    }

    QByteArray bytes()
    {
        const auto left = static_cast<std::size_t>(m_end - m_next);
        const auto count = std::min<std::size_t>(byte(), left > 0 ? left - 1 : 0);
        QByteArray text(reinterpret_cast<const char *>(m_next), static_cast<qsizetype>(count));
        m_next += count;
        return text;
    }

    const std::uint8_t *m_next;
    const std::uint8_t *const m_end;
};

/// The first decoding may drop meaningless values, such as the type of a guid without a text.
template <typename Record, typename Argument>
void check(Record (*decode)(const Argument &), const QVariant &variant)
{
    const Record first = decode(variant.value<Argument>());
    const Record second = decode(encoded(first));
    if (!(decode(encoded(second)) == second))
        std::abort();
}
template <typename Record> void check(Record (*decode)(const QVariant &), const QVariant &variant)
{
    check<Record, QVariant>(decode, variant);
}

/// Encoded directly into bytes, a record must equal its encoded hash, whatever the previous record
/// was: here one with half of its fields.
void checkStreamed(const QVariant &variant)
{
    const QVariantHash whole = variant.toHash();
    QVariantHash halves[2];
    int number = 0;
    for (auto it = whole.cbegin(); it != whole.cend(); ++it)
        halves[number++ % 2].insert(it.key(), it.value());
    QList<AbstractNewDownloadRequest> downloads;
    for (const QVariantHash &hash : {whole, whole, halves[0], halves[1], QVariantHash(), whole}) {
        const auto info = std::make_shared<AbstractDownloadPersistentInfo>(toDownloadInfo(hash));
        downloads.append({info});
        // Use the whole hash as the source's, too: few inputs contain a nested one.
        const auto other = std::make_shared<AbstractDownloadPersistentInfo>(*info);
        other->source = toDownloadSourceInfo(hash);
        downloads.append({other});
    }
    if (!isStreamedAsHashes(downloads))
        std::abort();
}

using Check = void (*)(const QVariant &);
constexpr Check checks[] = {
    [](const QVariant &v) { check(toNewDownloadsRequest, v); },
    [](const QVariant &v) { check(toNewDownloadRequest, v); },
    [](const QVariant &v) { check(toDownloadInfo, v); },
    [](const QVariant &v) { check(toDownloadSourceInfo, v); },
    [](const QVariant &v) { check(toDownloadMirror, v); },
    [](const QVariant &v) { check(toDownloadMirrors, v); },
    [](const QVariant &v) { check(toDownloadGuid, v); },
    [](const QVariant &v) { check(toDownloadDestination, v); },
    [](const QVariant &v) { check(toDownloadResourceDesc, v); },
    [](const QVariant &v) { check(AbstractFileDetails::fromVariantHash, v); },
    [](const QVariant &v) { check(AbstractFileInfo::fromVariantHash, v); },
    [](const QVariant &v) { check(AbstractDownloadSection::fromVariantHash, v); },
    [](const QVariant &v) { check(AbstractDownloadFileInfo::fromVariantHash, v); },
    [](const QVariant &v) { check(toDownloadFilesInfos, v); },
    [](const QVariant &v) { check(toDownloadableSubtitlesInfo, v); },
    [](const QVariant &v) { check(toDownloadableSubtitlesInfos, v); },
    [](const QVariant &v) { check(toDownloadsTagDetails, v); },
    [](const QVariant &v) { check(toDownloadErrorAllowedToAutoRetry, v); },
    [](const QVariant &v) { check(toDownloadsErrorsAllowedToAutoRetry, v); },
    [](const QVariant &v) { check(toDownloadPreviewInfo, v); },
    [](const QVariant &v) { check(toDownloadScheduleRecord, v); },
    [](const QVariant &v) { check(toLockedDownloadOperationInfo, v); },
    [](const QVariant &v) { check(toConnectionsMap, v); },
    [](const QVariant &v) { check(toLiveDownloadRunTimeInfo, v); },
    [](const QVariant &v) { check(toDownloadRunTimeInfo, v); },
    [](const QVariant &v) { check(toDownloadMergeOptions, v); },
    [](const QVariant &v) { check(toDownloadMergeTaskOptions, v); },
    checkStreamed,
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    VariantBuilder builder(data, size);
    const Check &check = checks[builder.byte() % std::size(checks)];
    check(builder.variant());
    return 0;
}
