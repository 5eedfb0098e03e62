#pragma once

#include "qtappabstractsettingsmanager.h"

#include <QReadWriteLock>

#include <optional>

/**
 * Settings in memory only.
 *
 * Any thread. Signals are emitted on the thread that made the change, after the lock was released.
 * A value that was set stays set, even if it equals its default.
 */
class QtAppSettingsInMemoryManager : public QtAppAbstractSettingsManager {
    Q_OBJECT
public:
    explicit QtAppSettingsInMemoryManager(QObject *parent = nullptr);

    QString value(const QString &key) const override;
    QString defaultValue(const QString &key) const override;
    /// Defaults change without a signal.
    void setDefaultValue(const QString &key, const QString &value) override;
    Values allValues() const override;
    Values allDefaultValues() const override;
    /// Replaces the defaults first, so that slots for allValuesChanged() see both.
    void setAll(const Values &values, const Values &defaultValues, const QString &source) override;
    /// Emits allValuesChanged(), even if nothing differs.
    void setAllValues(const Values &values, const QString &source) override;
    void setAllDefaultValues(const Values &values) override;
    /// Sets, in the order of the list, the pairs that differ from value(), and emits
    /// valuesChanged() with them, unless there are none.
    void setValues(const QList<std::pair<QString, QString>> &values,
                   const QString &source) override;
    /// Removes all values and emits settingsResetToDefaults(), unless there are none.
    void resetToDefaults(const QString &source) override;

protected:
    /// The value that was set, if one was; unlike value(), never a default.
    std::optional<QString> ownValue(const QString &key) const;
    /// Sets the values of keys that have none, and emits allValuesChanged().
    void addValues(const Values &values, const QString &source);

private:
    mutable QReadWriteLock m_lock;
    Values m_values;
    Values m_defaultValues;
};
