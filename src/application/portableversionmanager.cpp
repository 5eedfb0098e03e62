#include "portableversionmanager.h"

#include "qtappportablemodesupport.h"

#include <QCoreApplication>

PortableVersionManager::PortableVersionManager(const QString &portableDataPath, QObject *parent)
    : QObject(parent)
{
    initialize(portableDataPath);
}

bool PortableVersionManager::supportsPortableMode()
{
#ifdef KOVALO_PORTABLE_MODE
    return true;
#else
    return false;
#endif
}

QDir PortableVersionManager::dataDirIn(const QDir &appRootDir)
{
    return QDir(appRootDir.absoluteFilePath(QStringLiteral("portabledata")));
}

void PortableVersionManager::initialize(const QString &portableDataPath)
{
    m_appRootDir = QDir(QCoreApplication::applicationDirPath());
    if (!portableDataPath.isEmpty()) {
        m_dataDir = QDir(portableDataPath);
        m_portable = true;
    } else if (supportsPortableMode()) {
        m_dataDir = dataDirIn(m_appRootDir);
        m_portable = m_dataDir.exists();
    } else {
        return;
    }
    m_portableModeSupport = QSharedPointer<QtAppPortableModeSupport>::create(m_portable);
}
