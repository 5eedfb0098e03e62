#include "kovsettingsbridge.h"

#include "appsettingsmanager.h"
#include "qtappdefaultlogger.h"

#include <QUuid>

#include <utility>

KovSettingsBridge::KovSettingsBridge(QSharedPointer<QtAppAbstractSettingsManager> settings,
                                     QObject *parent)
    : QtAppAbstractSettingsManager(parent), m_settings(std::move(settings)),
      m_ownSource(QUuid::createUuid().toString())
{
    QtAppAbstractSettingsManager *const shared = m_settings.data();
    connect(shared, &QtAppAbstractSettingsManager::valuesChanged, this,
            [this](const ValuesList &changed, const QString &source) {
                Q_EMIT valuesChanged(changed, sourceForClient(source));
            });
    connect(shared, &QtAppAbstractSettingsManager::allValuesChanged, this,
            [this](const QString &source) { Q_EMIT allValuesChanged(sourceForClient(source)); });
    connect(
        shared, &QtAppAbstractSettingsManager::settingsResetToDefaults, this,
        [this](const QString &source) { Q_EMIT settingsResetToDefaults(sourceForClient(source)); });
}

QString KovSettingsBridge::value(const QString &key) const { return m_settings->value(key); }

QString KovSettingsBridge::defaultValue(const QString &key) const
{
    return m_settings->defaultValue(key);
}

void KovSettingsBridge::setDefaultValue(const QString &key, const QString &value)
{
    m_settings->setDefaultValue(key, value);
}

QtAppAbstractSettingsManager::Values KovSettingsBridge::allValues() const
{
    return m_settings->allValues();
}

QtAppAbstractSettingsManager::Values KovSettingsBridge::allDefaultValues() const
{
    return m_settings->allDefaultValues();
}

void KovSettingsBridge::setAllValues(const Values &values, const QString &source)
{
    Values allowed = values;
    const Values own = m_settings->allValues();
    for (const QString &key : AppSettingsManager::forbiddenToChangeByRemote()) {
        allowed.remove(key);
        if (const auto kept = own.constFind(key); kept != own.cend())
            allowed.insert(key, *kept);
    }
    makeChange(source, [this, &allowed] { m_settings->setAllValues(allowed, m_ownSource); });
}

void KovSettingsBridge::setAllDefaultValues(const Values &values)
{
    m_settings->setAllDefaultValues(values);
}

void KovSettingsBridge::setValues(const QList<std::pair<QString, QString>> &values,
                                  const QString &source)
{
    const QStringList forbidden = AppSettingsManager::forbiddenToChangeByRemote();
    ValuesList allowed;
    ValuesList refused;
    for (const auto &keyAndValue : values) {
        const QString &key = keyAndValue.first;
        if (!forbidden.contains(key))
            allowed.append(keyAndValue);
        else if (const QString current = value(key); current != keyAndValue.second)
            refused.emplace_back(key, current);
    }
    makeChange(source, [this, &allowed] { m_settings->setValues(allowed, m_ownSource); });
    if (refused.isEmpty())
        return;
    logLine(1,
            QStringLiteral("[KovSettingsBridge]: WARNING: a client may not change %1")
                .arg(refused.constFirst().first));
    Q_EMIT valuesChanged(refused, refusalSource());
}

void KovSettingsBridge::resetToDefaults(const QString &source)
{
    ValuesList kept;
    const Values own = m_settings->allValues();
    for (const QString &key : AppSettingsManager::forbiddenToChangeByRemote()) {
        if (const auto value = own.constFind(key); value != own.cend())
            kept.emplace_back(key, *value);
    }
    makeChange(source, [this] { m_settings->resetToDefaults(m_ownSource); });
    // Also sent to the client that has reset them.
    if (!kept.isEmpty())
        m_settings->setValues(kept, refusalSource());
}

QString KovSettingsBridge::sourceForClient(const QString &source) const
{
    return source == m_ownSource ? m_clientSource : source;
}

template <typename Change> void KovSettingsBridge::makeChange(const QString &source, Change change)
{
    const QString outer = std::exchange(m_clientSource, source);
    change();
    m_clientSource = outer;
}
