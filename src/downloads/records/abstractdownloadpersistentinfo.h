#pragma once

#include "abstractdownloaddestination.h"
#include "abstractdownloadenums.h"
#include "abstractdownloadfileinfo.h"
#include "abstractdownloadguid.h"
#include "abstractdownloadmirrorinfo.h"
#include "abstractdownloadresourcedescription.h"
#include "abstractdownloadsourceinfo.h"
#include "abstracterror.h"
#include "downloadablesubtitlesinfo.h"

#include <QByteArrayView>
#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringList>
#include <QUuid>
#include <QVariantHash>

class RecordsStreamContext;

/// The description of a download, as it is stored, and as a new download is handed to the
/// application.
struct AbstractDownloadPersistentInfo {
    /// Names of the components through which the download came, the outermost first.
    QStringList originatorsNamesChain;
    /// Null until the application assigns one.
    QUuid uuid;
    AbstractDownloadGuid guid;
    /// The name of the engine module that handles it; the application chooses one if empty.
    QString moduleUid;
    AbstractDownloadCreatedBy createdBy = AbstractDownloadCreatedBy::Unknown;
    quint64 flags = 0;
    /// 0 if there is none.
    qint64 parentDownloadId = 0;
    QList<qint64> childrenDownloadsIds;
    AbstractDownloadResourceDescription desc;
    AbstractDownloadSourceInfo source;
    AbstractDownloadDestination destination;
    QList<AbstractDownloadMirrorInfo> mirrors;
    QString title;
    QDateTime creationTime;
    QDateTime finishedTime;
    /// The engine module's state for resuming.
    QVariantHash resumeData;
    AbstractError lastError;
    QDateTime lastErrorTime;
    /// Whether the source supports resuming; 0 is not known yet.
    int resumeSupport = 0;
    QList<AbstractDownloadFileInfo> files;
    /// The type of all files, if it is the same.
    AbstractFileType allFilesType = AbstractFileType::Unknown;
    /// A counter of the engine; encoded only when it is not 0.
    qint64 tbu2c = 0;
    AbstractDownloadPriority priority = AbstractDownloadPriority::Normal;
    /// Bits of AbstractDownloadOption.
    quint64 supportedOptions = 0;
    QString userAgent;
    QString preferredFileTitle;
    QList<DownloadableSubtitlesInfo> subtitles;
    /// The index of the file to open after completion; -1 for none.
    int launchableFileIndex = -1;
    AbstractDownloadFileExistsAction existingFileReaction =
        AbstractDownloadFileExistsAction::Default;
    /// The position in the list of downloads; -1 if it has none yet.
    qint64 order = -1;

    bool operator==(const AbstractDownloadPersistentInfo &) const = default;
};

QVariantHash toVariantHash(const AbstractDownloadPersistentInfo &info);
/// The bytes of that hash, see StreamFieldsWriter.
QByteArrayView toStream(RecordsStreamContext &context, const AbstractDownloadPersistentInfo &info);
/// "uuid", "desc" and "priority" keep their defaults when they are missing; "launchableFileIndex"
/// and "order" are -1 when they are missing or no numbers.
AbstractDownloadPersistentInfo toDownloadInfo(const QVariantHash &hash);
