#include "appcoreconfig.h"

#include "portableversionmanager.h"

#include <utility>

AppCoreConfig::AppCoreConfig(QSharedPointer<QtAppConfigBase> config,
                             QSharedPointer<PortableVersionManager> portableVersionManager)
    : m_config(std::move(config)), m_portableVersionManager(std::move(portableVersionManager))
{
}

QDir AppCoreConfig::dataDir() const
{
    return m_portableVersionManager->isPortableMode() ? m_portableVersionManager->dataDir()
                                                      : m_config->dataDir();
}

QDir AppCoreConfig::localDataDir() const
{
    return m_portableVersionManager->isPortableMode() ? m_portableVersionManager->localDataDir()
                                                      : m_config->localDataDir();
}
