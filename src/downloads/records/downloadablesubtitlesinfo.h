#pragma once

#include <QList>
#include <QString>
#include <QUrl>
#include <QVariant>

/// Subtitles that can be downloaded along with a video.
struct DownloadableSubtitlesInfo {
    /// Such as "en" or "pt-BR".
    QString languageCode;
    /// As it is shown to the user.
    QString languageName;
    QUrl url;

    bool operator==(const DownloadableSubtitlesInfo &) const = default;
};

QVariant toVariant(const DownloadableSubtitlesInfo &subtitles);
QVariant toVariant(const QList<DownloadableSubtitlesInfo> &subtitles);
DownloadableSubtitlesInfo toDownloadableSubtitlesInfo(const QVariant &variant);
QList<DownloadableSubtitlesInfo> toDownloadableSubtitlesInfos(const QVariant &variant);
