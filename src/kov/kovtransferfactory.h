#pragma once

#include "kovtransfer.h"

#include <QMap>
#include <QString>

class QtAppAbstractSettingsManager;
class QtAppPortableModeSupport;

/// Makes transfers as the settings say, and has what they share.
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

    /// Into which downloads go.
    QString folderPath() const;
    qint64 maxRunning() const;
    bool triesAgain() const;
    /// Takes over the limit of all transfers together as it is set now.
    void updateSpeedLimit();

private:
    /// One object for each folder and suffix.
    std::shared_ptr<KovDownloadFolder> folder(const QString &path);
    qint64 number(const QString &setting, qint64 otherwise) const;

    const QSharedPointer<QtAppAbstractSettingsManager> m_settings;
    const QSharedPointer<QtAppPortableModeSupport> m_portableModeSupport;
    QtClock &m_clock;
    const QSharedPointer<KovNetworkPool> m_network;
    const QSharedPointer<KovSpeedLimit> m_speedLimit;
    QMap<QString, std::shared_ptr<KovDownloadFolder>> m_folders;
};
