#pragma once

#include "qtappsettingsinsqlmanager.h"

#include <QSharedPointer>
#include <QStringList>

class AbstractSqlDatabaseManager;
class QtAppPortableModeSupport;

/**
 * The local store of the application's settings, with their defaults.
 *
 * With a portable-mode support, paths are stored in a form that survives moving the installation,
 * and are read back as this machine's paths. The default of DefaultDownloadPath, the same on all
 * machines, is in the stored form, too. Users of a path therefore decode it with
 * QtAppPortableModeSupport::decodePath(), which leaves an absolute path as it is. Without a support
 * object paths are stored and read unchanged.
 */
class AppSettingsManager : public QtAppSettingsInSqlManager {
    Q_OBJECT
public:
    /// The support may be null.
    explicit AppSettingsManager(const QSharedPointer<AbstractSqlDatabaseManager> &db,
                                QSharedPointer<QtAppPortableModeSupport> portableModeSupport = {},
                                QObject *parent = nullptr);

    /// The keys of the settings that hold programs to run and their arguments.
    static QStringList forbiddenToChangeByRemote();
    /// Replaces all defaults by the application's own, as the constructor does.
    void setupDefaults();

private:
    const QSharedPointer<QtAppPortableModeSupport> m_portableModeSupport;
};
