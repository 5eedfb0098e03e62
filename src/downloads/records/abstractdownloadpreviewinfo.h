#pragma once

#include <QString>
#include <QVariantHash>

/// The preview pictures of a download in the list.
struct AbstractDownloadPreviewInfo {
    /// Names of stored pictures; empty if there is none.
    QString smallPreviewId;
    QString largePreviewId;
    quint32 flags = 0;

    bool operator==(const AbstractDownloadPreviewInfo &) const = default;
};

QVariantHash toVariantHash(const AbstractDownloadPreviewInfo &preview);
AbstractDownloadPreviewInfo toDownloadPreviewInfo(const QVariantHash &hash);
