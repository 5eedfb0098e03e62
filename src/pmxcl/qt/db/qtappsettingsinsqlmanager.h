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
 * A write-through cache of the database's settings table: read once, every change is written.
 *
 * Any thread. A change is in the table when the call that made it returns; or, if the calling
 * thread cannot use the database manager, later, from the event loop of this object's thread.
 *
 * When the database fails, the settings are still served from memory, the error is logged once per
 * file, and the next change, or storeUnstored(), stores what could not be stored before. A table
 * that could not be read is read then; values changed since take precedence. Nothing is written to
 * the table before it has been read completely, so that a corrupt file is not changed.
 */
class QtAppSettingsInSqlManager : public QtAppSettingsInMemoryManager {
    Q_OBJECT
public:
    /// Whether the table has the values in memory, and why not.
    enum class StoreState {
        InStep,
        /// Another process has locked the database.
        Busy,
        /// The file is corrupt, the disk is full, or the like.
        Failed,
    };

    /// The codec may be null: values are stored unchanged.
    explicit QtAppSettingsInSqlManager(QSharedPointer<AbstractSqlDatabaseManager> db,
                                       QSharedPointer<const QtAppAbstractSettingsCodec> codec = {},
                                       QObject *parent = nullptr);
    ~QtAppSettingsInSqlManager() override;

    /// Whether the table has been read completely.
    bool isRead() const;
    /// InStep if the table was read and every change is in it; else the last failure.
    StoreState storeState() const;
    /// Retries what failed: reads the table, stores the changes.
    void storeUnstored();

private Q_SLOTS:
    void onValuesChanged(const QList<std::pair<QString, QString>> &changed, const QString &source);
    void onAllValuesChanged(const QString &source);
    void onSettingsResetToDefaults();

private:
    /// Creates the table if necessary, and reads it. False if that fails.
    bool load();
    void storeAllValues();
    /// Writes unstored changes. It and the functions that it calls run under the database's lock.
    void storePending();
    /// Replaces the table's contents by the values in memory.
    bool writeAll();
    /// Returns the keys whose values could not be written.
    QSet<QString> writeUnstoredKeys();
    bool write(const QString &key, const QString &value);
    /// Logs a failed step of storing, unless an earlier failure was logged and persists.
    bool checkStored(bool ok, const char *step, int line = __builtin_LINE());
    /// Records why the table cannot be used; checks a file that may be corrupt, once.
    void noteFailure(const QSqlError &error);

    const QSharedPointer<AbstractSqlDatabaseManager> m_db;
    const QSharedPointer<const QtAppAbstractSettingsCodec> m_codec;
    // These are guarded by the database's lock.
    std::unique_ptr<QtAppSettingsSqlTable> m_table;
    bool m_isRead = false;
    bool m_loading = false;
    StoreState m_failure = StoreState::InStep;
    // Changes that could not be stored so far.
    bool m_allUnstored = false;
    QSet<QString> m_unstoredKeys;
};
