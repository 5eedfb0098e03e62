#pragma once

#include <QHash>
#include <QList>
#include <QObject>
#include <QString>

#include <utility>

/**
 * Settings: text values by name, with defaults.
 *
 * "source" identifies who made a change. The signal about the change carries it, so that a listener
 * can ignore its own changes.
 */
class QtAppAbstractSettingsManager : public QObject {
    Q_OBJECT
public:
    using Values = QHash<QString, QString>;
    using ValuesList = QList<std::pair<QString, QString>>;

    explicit QtAppAbstractSettingsManager(QObject *parent = nullptr);

    /// The value, else the default, else a null string.
    virtual QString value(const QString &key) const = 0;
    virtual QString defaultValue(const QString &key) const = 0;
    virtual void setDefaultValue(const QString &key, const QString &value) = 0;
    /// The values that were set, without defaults.
    virtual Values allValues() const = 0;
    virtual Values allDefaultValues() const = 0;
    virtual void setAllValues(const Values &values, const QString &source) = 0;
    virtual void setAllDefaultValues(const Values &values) = 0;
    /// Replaces values and defaults, atomically for listeners where the manager supports it.
    virtual void setAll(const Values &values, const Values &defaultValues, const QString &source);
    /// The same as setValues() with this one pair and an empty source.
    virtual void setValue(const QString &key, const QString &value);
    virtual void setValues(const QList<std::pair<QString, QString>> &values,
                           const QString &source) = 0;
    virtual void resetToDefaults(const QString &source) = 0;

Q_SIGNALS:
    void valuesChanged(const QList<std::pair<QString, QString>> &changed, const QString &source);
    void allValuesChanged(const QString &source);
    void settingsResetToDefaults(const QString &source);
};
