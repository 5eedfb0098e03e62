#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>

/// The properties of a tag that the user gives to downloads.
struct DownloadsTagDetails {
    /// A download of a file with one of these extensions gets the tag.
    QStringList defaultExtensions;
    QString defaultDownloadFolder;

    bool operator==(const DownloadsTagDetails &) const = default;
};

QVariant toVariant(const DownloadsTagDetails &details);
QVariant toVariant(const QList<DownloadsTagDetails> &details);
DownloadsTagDetails toDownloadsTagDetails(const QVariant &variant);
