#pragma once

#include "abstractdownloadenums.h"

#include <QString>
#include <QVariantHash>

/// Properties of a file's content. A number that is not known is 0.
struct AbstractFileDetails {
    AbstractFileType type = AbstractFileType::Unknown;
    /// The media type, such as "video/mp4".
    QString contentType;
    QString format;
    /// In pixels.
    int width = 0;
    int height = 0;
    /// In bits per second.
    qint64 bitrate = 0;
    /// Frames per second; always finite.
    double fps = 0;
    /// In milliseconds.
    qint64 duration = 0;

    QVariantHash toVariantHash() const;
    static AbstractFileDetails fromVariantHash(const QVariantHash &hash);

    bool operator==(const AbstractFileDetails &) const = default;
};
