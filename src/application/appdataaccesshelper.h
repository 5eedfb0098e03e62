#pragma once

#include <QDir>
#include <QObject>
#include <QSharedPointer>
#include <QString>
#include <QWeakPointer>

class AbstractSqlDatabaseManager;
class QtAppAbstractSettingsManager;
class QtAppPortableModeSupport;

/**
 * Hands out the local database and the local settings store.
 *
 * Each is created on first use and shared while anyone holds a reference; after that, the next call
 * creates a new one, which reads the file again. Belongs to one thread.
 */
class AppDataAccessHelper : public QObject {
    Q_OBJECT
public:
    /// The support object may be null.
    AppDataAccessHelper(const QDir &dataDir,
                        QSharedPointer<QtAppPortableModeSupport> portableModeSupport,
                        QObject *parent = nullptr);

    /// "db.sqlite" in the data directory.
    QString databaseFilePath() const;
    QSharedPointer<AbstractSqlDatabaseManager> database() const;
    QSharedPointer<QtAppAbstractSettingsManager> settings() const;

private:
    const QDir m_dataDir;
    const QSharedPointer<QtAppPortableModeSupport> m_portableModeSupport;
    mutable QWeakPointer<AbstractSqlDatabaseManager> m_database;
    mutable QWeakPointer<QtAppAbstractSettingsManager> m_settings;
};
