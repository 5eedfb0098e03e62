#pragma once

#include "abstractdownloadmergetaskoptions.h"
#include "abstractdownloadpreviewinfo.h"
#include "abstractdownloadruntimeinfo.h"
#include "abstractdownloadschedulerecord.h"
#include "abstractnewdownloadsrequest.h"
#include "downloaderrorallowedtoautoretry.h"
#include "downloadstagdetails.h"

#include <QRandomGenerator>
#include <QTimeZone>

#include <concepts>

/// Fills download records with values that depend on the seed only. About one value in four keeps
/// its default, so that both kinds stand beside each other.
class RandomDownloadRecords {
public:
    explicit RandomDownloadRecords(quint32 seed) : m_random(seed) { }

    int upTo(int limit) { return m_random.bounded(limit + 1); }

    void fill(std::integral auto &number)
    {
        using Number = std::remove_reference_t<decltype(number)>;
        if (!keepsDefault())
            number = static_cast<Number>(m_random.generate64());
    }
    void fill(bool &value) { value = upTo(1) == 1; }
    void fill(double &value) { value = upTo(240) / 4.0; }
    void fill(QString &text)
    {
        static const QString alphabet = QStringLiteral("aZ09 .;=%1\n\"\\ěř字😀");
        if (keepsDefault())
            return;
        for (int i = upTo(20); i >= 0; --i)
            text += alphabet[upTo(int(alphabet.size()) - 1)];
    }
    void fill(QByteArray &bytes)
    {
        if (keepsDefault())
            return;
        for (int i = upTo(20); i >= 0; --i)
            bytes += static_cast<char>(upTo(255));
    }
    void fill(QUrl &url)
    {
        if (!keepsDefault())
            url = QUrl(QStringLiteral("https://h%1.example.org/a%20b?q=%C4%9B#%2")
                           .arg(upTo(9))
                           .arg(upTo(9)));
    }
    void fill(QDateTime &time)
    {
        if (!keepsDefault())
            time = QDateTime::fromMSecsSinceEpoch(qint64{m_random.generate()} * 1001, Qt::UTC);
    }
    void fill(QUuid &uuid)
    {
        if (!keepsDefault())
            uuid = QUuid(m_random.generate(), 1, 2, 3, 4, 5, 6, 7, 8, 9, 10);
    }
    void fill(QStringList &texts) { fillList(texts); }
    void fill(QVariantHash &hash)
    {
        for (int i = upTo(2); i > 0; --i) {
            QString text;
            fill(text);
            hash.insert(text, QVariantList{text, i, QVariantHash{{text, i}}});
        }
    }
    template <typename T>
    requires std::is_enum_v<T>
    void fill(T &value) { value = static_cast<T>(upTo(6) - 1); }
    template <typename T> void fill(QList<T> &list) { fillList(list); }

    void fill(QNetworkCookie &cookie)
    {
        cookie = QNetworkCookie("name" + QByteArray::number(upTo(99)), "a/b+c=" + hex());
        if (!keepsDefault())
            cookie.setDomain(QStringLiteral(".h%1.example.org").arg(upTo(9)));
        if (!keepsDefault())
            cookie.setPath(QStringLiteral("/p%1/").arg(upTo(9)));
        if (!keepsDefault()) // whole seconds, as a cookie says it
            cookie.setExpirationDate(
                QDateTime::fromSecsSinceEpoch(1'700'000'000 + upTo(100'000'000), Qt::UTC));
        cookie.setHttpOnly(upTo(1) == 1);
        cookie.setSecure(upTo(1) == 1);
        if (!keepsDefault())
            cookie.setSameSitePolicy(QNetworkCookie::SameSite::Lax);
    }
    void fill(AbstractError &error)
    {
        int code = 0;
        QString category;
        QString description;
        fillAll(code, category, description);
        error = AbstractError(code, category.toStdString(), "source", description.toStdString());
    }
    void fill(AbstractDownloadGuid &guid)
    {
        // Without a guid the types are not encoded.
        if (keepsDefault())
            return;
        fillAll(guid.guidType, guid.type);
        guid.guid = QString::fromLatin1(hex());
    }
    void fill(AbstractDownloadSourceInfo &r)
    {
        fillAll(r.url, r.referer, r.cookies, r.postData, r.webPageUrl, r.customData, r.flags);
    }
    void fill(AbstractDownloadMirrorInfo &r) { fill(r.source); }
    void fill(AbstractDownloadDestination &r) { fillAll(r.type, r.path, r.data); }
    void fill(AbstractDownloadResourceDescription &r)
    {
        fillAll(r.title, r.filesTypes, r.previewImageUrl, r.mediaDurationHr, r.ageHr);
    }
    void fill(AbstractFileDetails &r)
    {
        fillAll(r.type, r.contentType, r.format, r.width, r.height, r.bitrate, r.fps, r.duration);
    }
    void fill(AbstractFileInfo &r)
    {
        fillAll(r.originType, r.details, r.path, r.size, r.lastModified);
    }
    void fill(AbstractDownloadSection &r) { fillAll(r.offset, r.size, r.done); }
    void fill(AbstractDownloadFileInfo &r)
    {
        fill(static_cast<AbstractFileInfo &>(r));
        fillAll(r.priority, r.sections, r.writeOffset, r.tmpPath, r.flags);
    }
    void fill(DownloadableSubtitlesInfo &r) { fillAll(r.languageCode, r.languageName, r.url); }
    void fill(DownloadsTagDetails &r) { fillAll(r.defaultExtensions, r.defaultDownloadFolder); }
    void fill(DownloadErrorAllowedToAutoRetry &r) { fillAll(r.category, r.code); }
    void fill(QSet<DownloadErrorAllowedToAutoRetry> &set)
    {
        QList<DownloadErrorAllowedToAutoRetry> list;
        fill(list);
        set = {list.begin(), list.end()};
    }
    void fill(AbstractDownloadPreviewInfo &r)
    {
        fillAll(r.smallPreviewId, r.largePreviewId, r.flags);
    }
    void fill(AbstractDownloadScheduleRecord &r) { fillAll(r.days, r.fromTime, r.toTime); }
    void fill(AbstractLockedDownloadOperationInfo &r)
    {
        fillAll(r.running, r.currentProgress, r.totalProgress, r.error, r.errorTime);
    }
    void fill(QtConnectionsMap &map)
    {
        for (int i = upTo(3); i > 0; --i) {
            QtHostAndPort peer;
            int count = 0;
            fillAll(peer.host, peer.port, count);
            map.insert(peer, count);
        }
    }
    void fill(AbstractLiveDownloadRunTimeInfo &r)
    {
        fillAll(r.downloadSpeed, r.uploadSpeed, r.payloadDownloadSpeed, r.payloadUploadSpeed,
                r.running, r.stopping, r.tasks, r.tasksProgress, r.connections, r.details);
    }
    void fill(AbstractDownloadRunTimeInfo &r)
    {
        fillAll(r.live, r.flags, r.lockReason, r.loi, r.allFilesTypes, r.forbidAutoRetryCount,
                r.storageId);
    }
    void fill(AbstractDownloadMergeOptions &r) { fill(r.options); }
    void fill(AbstractDownloadMergeTaskOptions &r)
    {
        fillAll(r.mo, r.dontMergeJustAddNew, r.restart, r.start);
    }
    void fill(AbstractDownloadPersistentInfo &r)
    {
        fillAll(r.originatorsNamesChain, r.uuid, r.guid, r.moduleUid, r.createdBy, r.flags,
                r.parentDownloadId, r.childrenDownloadsIds, r.desc, r.source, r.destination,
                r.mirrors, r.title, r.creationTime, r.finishedTime, r.resumeData, r.lastError,
                r.lastErrorTime, r.resumeSupport, r.files, r.allFilesType, r.tbu2c, r.priority);
        fillAll(r.supportedOptions, r.userAgent, r.preferredFileTitle, r.subtitles,
                r.launchableFileIndex, r.existingFileReaction, r.order);
    }
    void fill(AbstractNewDownloadRequest &r)
    {
        r.info = std::make_shared<AbstractDownloadPersistentInfo>();
        fill(*r.info);
    }
    void fill(AbstractNewDownloadsRequest &r)
    {
        fillAll(r.downloads, r.flags, r.source, r.preferredDownloadType);
        r.selectedDownloads.resize(r.downloads.size() + upTo(1));
        for (qsizetype i = 0; i < r.selectedDownloads.size(); ++i)
            r.selectedDownloads.setBit(i, upTo(1) == 1);
    }

private:
    bool keepsDefault() { return upTo(3) == 0; }
    QByteArray hex() { return QByteArray::number(m_random.generate64(), 16); }

    template <typename... T> void fillAll(T &...values) { (fill(values), ...); }

    template <typename List> void fillList(List &list)
    {
        for (int i = upTo(3); i > 0; --i) {
            typename List::value_type element{};
            fill(element);
            list.append(element);
        }
    }

    QRandomGenerator m_random;
};
