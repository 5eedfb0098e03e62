#pragma once

#include "qtappsettingsinmemorymanager.h"

#include <QSet>
#include <QSharedPointer>

#include <memory>

class AbstractSqlDatabaseManager;
class QtAppAbstractSettingsCodec;
class QtAppSettingsSqlTable;

/**
 * Settings in memory that are read from the database's settings table once and write every change
 * through to it.
 *
 * Any thread, when the database manager can be used by any; a change is in the table when the call
 * that made it returns. With a database manager of one thread, changes made on other threads are
 * written when this object's thread comes to it.
 *
 * A database that fails costs nothing but the storing: the settings are served from memory, what
 * is wrong is logged once per file, and the next change that can be stored takes along what could
 * not. When the table could not be read to its end, nothing is written to it, so that a broken file
 * stays as it is.
 */
class QtAppSettingsInSqlManager : public QtAppSettingsInMemoryManager {
    Q_OBJECT
public:
    /// The codec may be null: values are stored as they are.
    explicit QtAppSettingsInSqlManager(QSharedPointer<AbstractSqlDatabaseManager> db,
                                       QSharedPointer<const QtAppAbstractSettingsCodec> codec = {},
                                       QObject *parent = nullptr);
    ~QtAppSettingsInSqlManager() override;

private Q_SLOTS:
    void onValuesChanged(const QList<std::pair<QString, QString>> &changed, const QString &source);
    void onAllValuesChanged(const QString &source);
    void onSettingsResetToDefaults();

private:
    void load();
    /// Runs the function on a thread that can use the database: this one or, later, this object's.
    template <typename Function> void onDatabaseThread(Function &&function);
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

    const QSharedPointer<AbstractSqlDatabaseManager> m_db;
    const QSharedPointer<const QtAppAbstractSettingsCodec> m_codec;
    const std::unique_ptr<QtAppSettingsSqlTable> m_table;
    // What could not be stored so far; guarded by the database's lock.
    bool m_failureLogged = false;
    bool m_allUnstored = false;
    QSet<QString> m_unstoredKeys;
};
