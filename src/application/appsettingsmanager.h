#pragma once

#include "qtappsettingsinsqlmanager.h"

#include <QSharedPointer>
#include <QStringList>

class AbstractSqlDatabaseManager;
class QtAppPortableModeSupport;

/**
 * The local store of the application's settings, with their defaults.
 *
 * With a portable-mode support, paths are stored in the form that survives moving the installation
 * and read back as this machine's paths. The default of DefaultDownloadPath, which is the same for
 * all machines, is in the form to store, too. Users of a path therefore decode it with
 * QtAppPortableModeSupport::decodePath(), which leaves an absolute path as it is. Without a support
 * paths are stored and read as they are.
 */
class AppSettingsManager : public QtAppSettingsInSqlManager {
    Q_OBJECT
public:
    /// The support may be null.
    explicit AppSettingsManager(const QSharedPointer<AbstractSqlDatabaseManager> &db,
                                QSharedPointer<QtAppPortableModeSupport> portableModeSupport = {},
                                QObject *parent = nullptr);

    /// The keys of the settings that name programs to run and what to tell them.
    static QStringList forbiddenToChangeByRemote();
    /// Replaces all defaults by the application's own, as the constructor does.
    void setupDefaults();

private:
    const QSharedPointer<QtAppPortableModeSupport> m_portableModeSupport;
};
