#pragma once

#include <QVariantHash>

/// A part of a file that is downloaded separately. All in bytes.
struct AbstractDownloadSection {
    qint64 offset = 0;
    qint64 size = 0;
    qint64 done = 0;

    QVariantHash toVariantHash() const;
    static AbstractDownloadSection fromVariantHash(const QVariantHash &hash);

    bool operator==(const AbstractDownloadSection &) const = default;
};
