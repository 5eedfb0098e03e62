#pragma once

#include "kovtransfer.h"

#include <QMap>
#include <QString>

class QtAppAbstractSettingsManager;
class QtAppPortableModeSupport;

/// Creates transfers according to the settings, and owns what they share.
class KovTransferFactory {
public:
    /// The settings name the download folder, the suffix of partial files and the limits. The
    /// portable-mode support may be null.
    KovTransferFactory(QSharedPointer<QtAppAbstractSettingsManager> settings,
                       QSharedPointer<QtAppPortableModeSupport> portableModeSupport,
                       QtClock &clock);
    ~KovTransferFactory();
    Q_DISABLE_COPY_MOVE(KovTransferFactory)

    KovTransfer *create(const KovJob &job, const KovDownloadRequest &request, QObject *parent);

    /// The download folder.
    QString folderPath() const;
    qint64 maxRunning() const;
    bool triesAgain() const;
    /// Applies the current setting of the speed limit for all transfers.
    void updateSpeedLimit();

private:
    /// One object per folder and suffix.
    std::shared_ptr<KovDownloadFolder> folder(const QString &path);
    qint64 number(const QString &setting, qint64 otherwise) const;

    const QSharedPointer<QtAppAbstractSettingsManager> m_settings;
    const QSharedPointer<QtAppPortableModeSupport> m_portableModeSupport;
    QtClock &m_clock;
    const QSharedPointer<KovNetworkPool> m_network;
    const QSharedPointer<KovSpeedLimit> m_speedLimit;
    QMap<QString, std::shared_ptr<KovDownloadFolder>> m_folders;
};
