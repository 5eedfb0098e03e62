#pragma once

#include "abstractdownloadenums.h"
#include "abstractdownloadsection.h"
#include "abstractfileinfo.h"

#include <QByteArrayView>
#include <QList>
#include <QString>
#include <QVariantHash>
#include <QVariantList>

class RecordsStreamContext;

/// One file of a download.
struct AbstractDownloadFileInfo : AbstractFileInfo {
    AbstractDownloadPriority priority = AbstractDownloadPriority::Inherited;
    QList<AbstractDownloadSection> sections;
    /// The position of the next byte if the file is written sequentially.
    qint64 writeOffset = 0;
    /// The file's name while it is incomplete.
    QString tmpPath;
    quint32 flags = 0;

    /// The fields of AbstractFileInfo and its own in one hash.
    QVariantHash toVariantHash() const;
    static AbstractDownloadFileInfo fromVariantHash(const QVariantHash &hash);

    bool operator==(const AbstractDownloadFileInfo &) const = default;
};

/// The bytes of the hash, see StreamFieldsWriter.
QByteArrayView toStream(RecordsStreamContext &context, const AbstractDownloadFileInfo &file);
QVariantList toVariantList(const QList<AbstractDownloadFileInfo> &files);
QList<AbstractDownloadFileInfo> toDownloadFilesInfos(const QVariantList &list);

/// The key of the files within a download.
inline QString downloadFilesKey() { return QStringLiteral("files"); }

/// A hash with only the files, under their key.
QVariantHash filesInfosToHash(const QList<AbstractDownloadFileInfo> &files);
