#pragma once

#include "abstractdownloadsourceinfo.h"

#include <QList>
#include <QVariant>

/// Another source of the same download.
struct AbstractDownloadMirrorInfo {
    AbstractDownloadSourceInfo source;

    bool operator==(const AbstractDownloadMirrorInfo &) const = default;
};

QVariant toVariant(const AbstractDownloadMirrorInfo &mirror);
QVariant toVariant(const QList<AbstractDownloadMirrorInfo> &mirrors);
AbstractDownloadMirrorInfo toDownloadMirror(const QVariant &variant);
QList<AbstractDownloadMirrorInfo> toDownloadMirrors(const QVariant &variant);
