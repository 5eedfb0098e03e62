#include "qtappsettingsinmemorymanager.h"

#include <QReadLocker>
#include <QWriteLocker>

QtAppSettingsInMemoryManager::QtAppSettingsInMemoryManager(QObject *parent)
    : QtAppAbstractSettingsManager(parent)
{
}

QString QtAppSettingsInMemoryManager::value(const QString &key) const
{
    const std::optional<QString> own = ownValue(key);
    return own ? *own : defaultValue(key);
}

std::optional<QString> QtAppSettingsInMemoryManager::ownValue(const QString &key) const
{
    const QReadLocker locker(&m_lock);
    const auto it = m_values.constFind(key);
    return it != m_values.constEnd() ? std::optional(*it) : std::nullopt;
}

QString QtAppSettingsInMemoryManager::defaultValue(const QString &key) const
{
    const QReadLocker locker(&m_lock);
    return m_defaultValues.value(key);
}

void QtAppSettingsInMemoryManager::setDefaultValue(const QString &key, const QString &value)
{
    const QWriteLocker locker(&m_lock);
    m_defaultValues.insert(key, value);
}

QtAppAbstractSettingsManager::Values QtAppSettingsInMemoryManager::allValues() const
{
    const QReadLocker locker(&m_lock);
    return m_values;
}

QtAppAbstractSettingsManager::Values QtAppSettingsInMemoryManager::allDefaultValues() const
{
    const QReadLocker locker(&m_lock);
    return m_defaultValues;
}

void QtAppSettingsInMemoryManager::setAllValues(const Values &values, const QString &source)
{
    {
        const QWriteLocker locker(&m_lock);
        m_values = values;
    }
    Q_EMIT allValuesChanged(source);
}

void QtAppSettingsInMemoryManager::setAllDefaultValues(const Values &values)
{
    const QWriteLocker locker(&m_lock);
    m_defaultValues = values;
}

void QtAppSettingsInMemoryManager::setAll(const Values &values, const Values &defaultValues,
                                          const QString &source)
{
    setAllDefaultValues(defaultValues);
    setAllValues(values, source);
}

void QtAppSettingsInMemoryManager::addValues(const Values &values, const QString &source)
{
    {
        const QWriteLocker locker(&m_lock);
        Values all = values;
        all.insert(m_values);
        m_values = all;
    }
    Q_EMIT allValuesChanged(source);
}

void QtAppSettingsInMemoryManager::setValues(const QList<std::pair<QString, QString>> &values,
                                             const QString &source)
{
    QList<std::pair<QString, QString>> changed = values;
    changed.removeIf([this](const std::pair<QString, QString> &pair) {
        return pair.second == value(pair.first);
    });
    if (changed.isEmpty())
        return;
    {
        const QWriteLocker locker(&m_lock);
        for (const auto &[key, newValue] : std::as_const(changed))
            m_values.insert(key, newValue);
    }
    Q_EMIT valuesChanged(changed, source);
}

void QtAppSettingsInMemoryManager::resetToDefaults(const QString &source)
{
    {
        const QWriteLocker locker(&m_lock);
        if (m_values.isEmpty())
            return;
        m_values.clear();
    }
    Q_EMIT settingsResetToDefaults(source);
}
