#include "qtappsettingsinsqlmanager.h"

#include "abstractsqldatabasemanager.h"
#include "assertionlog.h"
#include "qtappabstractsettingscodec.h"
#include "qtappdefaultlogger.h"
#include "qtappsettingssqltable.h"
#include "sqlbusywait.h"
#include "sqlfailurelog.h"

#include <QMetaObject>
#include <QSqlError>
#include <QThread>

#include <mutex>
#include <utility>

QtAppSettingsInSqlManager::QtAppSettingsInSqlManager(
    QSharedPointer<AbstractSqlDatabaseManager> db,
    QSharedPointer<const QtAppAbstractSettingsCodec> codec, QObject *parent)
    : QtAppSettingsInMemoryManager(parent), m_db(std::move(db)), m_codec(std::move(codec))
{
    // Direct: the change is stored when the call that made it returns, on any thread.
    connect(this, &QtAppAbstractSettingsManager::valuesChanged, this,
            &QtAppSettingsInSqlManager::onValuesChanged, Qt::DirectConnection);
    connect(this, &QtAppAbstractSettingsManager::allValuesChanged, this,
            &QtAppSettingsInSqlManager::onAllValuesChanged, Qt::DirectConnection);
    connect(this, &QtAppAbstractSettingsManager::settingsResetToDefaults, this,
            &QtAppSettingsInSqlManager::onSettingsResetToDefaults, Qt::DirectConnection);
    const std::lock_guard locker(*m_db);
    load();
}

QtAppSettingsInSqlManager::~QtAppSettingsInSqlManager() = default;

bool QtAppSettingsInSqlManager::isRead() const
{
    const std::lock_guard locker(*m_db);
    return m_isRead;
}

QtAppSettingsInSqlManager::StoreState QtAppSettingsInSqlManager::storeState() const
{
    const std::lock_guard locker(*m_db);
    const bool inStep = m_isRead && !m_allUnstored && m_unstoredKeys.isEmpty();
    return inStep ? StoreState::InStep : m_failure;
}

void QtAppSettingsInSqlManager::storeUnstored()
{
    const std::lock_guard locker(*m_db);
    if (storeState() != StoreState::InStep)
        storePending();
}

bool QtAppSettingsInSqlManager::load()
{
    const SqlBusyWait wait(m_db->databaseFilePath());
    m_db->openDatabase();
    m_table = std::make_unique<QtAppSettingsSqlTable>(m_db);
    Values records = m_table->readAll();
    m_isRead = !m_table->lastError().isValid();
    if (m_isRead || m_failure == StoreState::InStep) // the first failure only
        logLine(1,
                QStringLiteral("[QtAppSettingsInSqlManager]: got %1 records in the settings table")
                    .arg(records.size()));
    if (!m_isRead) {
        noteFailure(m_table->lastError());
        return false;
    }
    if (m_codec)
        for (auto it = records.begin(); it != records.end(); ++it)
            *it = m_codec->decode(it.key(), *it);
    if (m_allUnstored)
        return true; // the table is rewritten
    m_loading = true;
    addValues(records, QString());
    m_loading = false;
    return true;
}

void QtAppSettingsInSqlManager::onValuesChanged(const QList<std::pair<QString, QString>> &changed,
                                                const QString & /*source*/)
{
    const std::lock_guard locker(*m_db);
    for (const auto &[key, value] : changed)
        m_unstoredKeys.insert(key);
    storePending();
}

void QtAppSettingsInSqlManager::onAllValuesChanged(const QString & /*source*/)
{
    const std::lock_guard locker(*m_db);
    if (!m_loading)
        storeAllValues();
}

void QtAppSettingsInSqlManager::onSettingsResetToDefaults() { storeAllValues(); }

void QtAppSettingsInSqlManager::storeAllValues()
{
    const std::lock_guard locker(*m_db);
    m_allUnstored = true;
    storePending();
}

void QtAppSettingsInSqlManager::storePending()
{
    if (!m_db->canBeUsedInCurrentThread() && thread() != QThread::currentThread()) {
        QMetaObject::invokeMethod(
            this,
            [this] {
                const std::lock_guard locker(*m_db);
                storePending();
            },
            Qt::QueuedConnection);
        return;
    }
    const SqlBusyWait wait(m_db->databaseFilePath());
    if (!m_isRead && !load())
        return;
    if (!checkStored(m_table->beginTransaction(), "m_table->beginTransaction()"))
        return;
    // Another thread may have changed and stored the same settings since: store the values that are
    // now in memory, not the reported ones.
    QSet<QString> failed;
    if (m_allUnstored) {
        const bool written = writeAll();
        // All old values are better than a mix of old and new ones.
        if (!checkStored(m_table->endTransaction(written), "m_table->endTransaction(written)")
            || !written)
            return;
    } else {
        failed = writeUnstoredKeys();
        if (!checkStored(m_table->endTransaction(true), "m_table->endTransaction(true)"))
            return;
    }
    m_allUnstored = false;
    m_unstoredKeys = failed;
    if (failed.isEmpty())
        SqlFailureLog::forget(m_db->databaseFilePath());
}

bool QtAppSettingsInSqlManager::writeAll()
{
    if (!checkStored(m_table->clearTable(), "m_table->clearTable()"))
        return false;
    const Values current = allValues();
    for (auto it = current.cbegin(); it != current.cend(); ++it)
        if (!checkStored(write(it.key(), it.value()), "m_table->write(it.key(), it.value())"))
            return false;
    return true;
}

QSet<QString> QtAppSettingsInSqlManager::writeUnstoredKeys()
{
    QSet<QString> failed;
    bool busy = false;
    for (const QString &key : std::as_const(m_unstoredKeys)) {
        const std::optional<QString> value = ownValue(key);
        if (!value)
            continue;
        // After one timeout, do not wait again for every other value.
        if (busy || !checkStored(write(key, *value), "m_table->write(p.first, p.second)")) {
            busy = isBusyError(m_table->lastError());
            failed.insert(key);
        }
    }
    return failed;
}

bool QtAppSettingsInSqlManager::write(const QString &key, const QString &value)
{
    return m_table->write(key, m_codec ? m_codec->encode(key, value) : value);
}

bool QtAppSettingsInSqlManager::checkStored(bool ok, const char *step, int line)
{
    if (ok)
        return true;
    const QSqlError error = m_table->lastError();
    noteFailure(error);
    if (const QString failure = sqlFailureText(error);
        SqlFailureLog::isNew(m_db->databaseFilePath(), failure)) {
        logLine(1,
                QStringLiteral("[QtAppSettingsInSqlManager]: WARNING: cannot store settings: %1")
                    .arg(failure));
        checkOrLog(false, step, __builtin_FILE(), line);
    }
    return false;
}

void QtAppSettingsInSqlManager::noteFailure(const QSqlError &error)
{
    m_failure = isBusyError(error) ? StoreState::Busy : StoreState::Failed;
    if (m_failure == StoreState::Failed && m_db->databaseOpened()
        && SqlFailureLog::isNew(m_db->databaseFilePath(), QStringLiteral("check")))
        m_db->checkIfCorrupt();
}
