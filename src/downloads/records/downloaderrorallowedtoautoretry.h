#pragma once

#include <QSet>
#include <QString>
#include <QVariant>

/// An error after which a download may be retried without asking the user.
struct DownloadErrorAllowedToAutoRetry {
    /// The category to which the code belongs (AbstractError::category).
    QString category;
    int code = 0;

    bool operator==(const DownloadErrorAllowedToAutoRetry &) const = default;
};

size_t qHash(const DownloadErrorAllowedToAutoRetry &error, size_t seed = 0);

QVariant toVariant(const DownloadErrorAllowedToAutoRetry &error);
QVariant toVariant(const QSet<DownloadErrorAllowedToAutoRetry> &errors);
DownloadErrorAllowedToAutoRetry toDownloadErrorAllowedToAutoRetry(const QVariant &variant);
QSet<DownloadErrorAllowedToAutoRetry> toDownloadsErrorsAllowedToAutoRetry(const QVariant &variant);
