#pragma once

#include <QSet>
#include <QString>
#include <QVariant>

/// An error after which a download may be tried again without asking the user.
struct DownloadErrorAllowedToAutoRetry {
    /// Which list of codes the code is from (AbstractError::category).
    QString category;
    int code = 0;

    bool operator==(const DownloadErrorAllowedToAutoRetry &) const = default;
};

size_t qHash(const DownloadErrorAllowedToAutoRetry &error, size_t seed = 0);

QVariant toVariant(const DownloadErrorAllowedToAutoRetry &error);
QVariant toVariant(const QSet<DownloadErrorAllowedToAutoRetry> &errors);
DownloadErrorAllowedToAutoRetry toDownloadErrorAllowedToAutoRetry(const QVariant &variant);
QSet<DownloadErrorAllowedToAutoRetry> toDownloadsErrorsAllowedToAutoRetry(const QVariant &variant);
