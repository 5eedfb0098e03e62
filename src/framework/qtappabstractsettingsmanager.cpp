#include "qtappabstractsettingsmanager.h"

QtAppAbstractSettingsManager::QtAppAbstractSettingsManager(QObject *parent) : QObject(parent) { }

void QtAppAbstractSettingsManager::setValue(const QString &key, const QString &value)
{
    setValues({{key, value}}, QString());
}

void QtAppAbstractSettingsManager::setAll(const Values &values, const Values &defaultValues,
                                          const QString &source)
{
    setAllValues(values, source);
    setAllDefaultValues(defaultValues);
}
