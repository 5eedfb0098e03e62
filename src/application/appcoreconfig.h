#pragma once

#include "qtappconfigbase.h"

#include <QSharedPointer>

class PortableVersionManager;

/// The program's folders: those of the portable installation if it is one, else those of the
/// configuration that it wraps. The logs follow localDataDir().
class AppCoreConfig : public QtAppConfigBase {
public:
    /// Neither may be null.
    AppCoreConfig(QSharedPointer<QtAppConfigBase> config,
                  QSharedPointer<PortableVersionManager> portableVersionManager);
    Q_DISABLE_COPY_MOVE(AppCoreConfig)

    QDir dataDir() const override;
    QDir localDataDir() const override;

private:
    const QSharedPointer<QtAppConfigBase> m_config;
    const QSharedPointer<PortableVersionManager> m_portableVersionManager;
};
