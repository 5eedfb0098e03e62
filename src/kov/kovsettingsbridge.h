#pragma once

#include "qtappabstractsettingsmanager.h"

#include <QSharedPointer>
#include <QString>

/**
 * The application's settings as one connected client sees and changes them. Any number of clients
 * share the settings through a bridge each:
 *
 * What the client changes comes back from its own bridge under the source with which it made the
 * change, so that it is not told of it, and from the others under another one, so that they are.
 *
 * A client cannot change the settings that name programs to run. It is told their true values when
 * it tries.
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
    /// The source that the client is told of a change.
    QString sourceForClient(const QString &source) const;
    QString refusalSource() const { return QStringLiteral("KovSettingsBridge"); }
    template <typename Change> void makeChange(const QString &source, Change change);

    const QSharedPointer<QtAppAbstractSettingsManager> m_settings;
    /// Tells this client's changes from those of the others.
    const QString m_ownSource;
    /// Under which source the client is making a change just now.
    QString m_clientSource;
};
