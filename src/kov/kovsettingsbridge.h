#pragma once

#include "qtappabstractsettingsmanager.h"

#include <QSharedPointer>
#include <QString>

/**
 * The application's settings as one connected client sees and changes them; each client has a
 * bridge of its own.
 *
 * A change by the client is reported by its own bridge with the client's source, so that it is not
 * echoed, and by the other bridges with another source, so that their clients are notified.
 *
 * A client cannot change the settings that name programs to run. When it tries, it is sent their
 * true values.
 */
class KovSettingsBridge : public QtAppAbstractSettingsManager {
    Q_OBJECT
public:
    explicit KovSettingsBridge(QSharedPointer<QtAppAbstractSettingsManager> settings,
                               QObject *parent = nullptr);

    QString value(const QString &key) const override;
    QString defaultValue(const QString &key) const override;
    void setDefaultValue(const QString &key, const QString &value) override;
    Values allValues() const override;
    Values allDefaultValues() const override;
    void setAllValues(const Values &values, const QString &source) override;
    void setAllDefaultValues(const Values &values) override;
    void setValues(const QList<std::pair<QString, QString>> &values,
                   const QString &source) override;
    void resetToDefaults(const QString &source) override;

private:
    /// The source to report for a change.
    QString sourceForClient(const QString &source) const;
    QString refusalSource() const { return QStringLiteral("KovSettingsBridge"); }
    template <typename Change> void makeChange(const QString &source, Change change);

    const QSharedPointer<QtAppAbstractSettingsManager> m_settings;
    /// Tells this client's changes from those of the others.
    const QString m_ownSource;
    /// The source of the change that the client is making at the moment.
    QString m_clientSource;
};
