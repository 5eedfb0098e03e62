#pragma once

#include "qtappsettingsinmemorymanager.h"

#include <QSet>
#include <QSharedPointer>

#include <memory>

class AbstractSqlDatabaseManager;
class QSqlError;
class QtAppAbstractSettingsCodec;
class QtAppSettingsSqlTable;

/**
 * Settings in memory that are read from the database's settings table once and write every change
 * through to it.
 *
 * Any thread. A change is in the table when the call that made it returns, or, when the thread that
 * made it cannot use the database manager, when this object's thread comes to it.
 *
 * A database that fails costs nothing but the storing: the settings are served from memory, what
 * is wrong is logged once per file, and the next change, or storeUnstored(), stores what could not
 * be stored before. A table that could not be read is read then, beneath what was changed since.
 * Before it was read to its end nothing is written to it, so that a broken file stays as it is.
 */
class QtAppSettingsInSqlManager : public QtAppSettingsInMemoryManager {
    Q_OBJECT
public:
    /// How far memory and table are the same.
    enum class StoreState {
        InStep,
        /// Another process has the database.
        Busy,
        /// The file is broken, the disk is full, or the like.
        Failed,
    };

    /// The codec may be null: values are stored as they are.
    explicit QtAppSettingsInSqlManager(QSharedPointer<AbstractSqlDatabaseManager> db,
                                       QSharedPointer<const QtAppAbstractSettingsCodec> codec = {},
                                       QObject *parent = nullptr);
    ~QtAppSettingsInSqlManager() override;

    /// Whether the table was read to its end.
    bool isRead() const;
    /// InStep when the table was read and every change is in it; else what was in the way last.
    StoreState storeState() const;
    /// Tries again what failed: reads the table, stores the changes.
    void storeUnstored();

private Q_SLOTS:
    void onValuesChanged(const QList<std::pair<QString, QString>> &changed, const QString &source);
    void onAllValuesChanged(const QString &source);
    void onSettingsResetToDefaults();

private:
    /// Makes the table if need be, and reads it. False when that fails.
    bool load();
    void storeAllValues();
    /// Writes what is not stored yet. It and what it calls run under the database's lock.
    void storePending();
    /// Makes the table what the memory is.
    bool writeAll();
    /// Returns the keys whose values could not be written.
    QSet<QString> writeUnstoredKeys();
    bool write(const QString &key, const QString &value);
    /// Logs a failed step of storing, unless an earlier one is logged and still stands.
    bool checkStored(bool ok, const char *step, int line = __builtin_LINE());
    /// Keeps why the table cannot be used; a file that may be broken is looked at, once.
    void noteFailure(const QSqlError &error);

    const QSharedPointer<AbstractSqlDatabaseManager> m_db;
    const QSharedPointer<const QtAppAbstractSettingsCodec> m_codec;
    // These are guarded by the database's lock.
    std::unique_ptr<QtAppSettingsSqlTable> m_table;
    bool m_isRead = false;
    bool m_loading = false;
    StoreState m_failure = StoreState::InStep;
    // What could not be stored so far.
    bool m_failureLogged = false;
    bool m_allUnstored = false;
    QSet<QString> m_unstoredKeys;
};
