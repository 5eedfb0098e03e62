#pragma once

#include "qtappabstractsettingscodec.h"

#include <QSet>
#include <QSharedPointer>

class QtAppPortableModeSupport;

/// Stores settings that are paths in a form that survives moving a portable installation.
class AppSettingsPathCodec : public QtAppAbstractSettingsCodec {
public:
    /// Null without a support object: paths are then stored unchanged.
    static QSharedPointer<const AppSettingsPathCodec>
    create(const QSharedPointer<QtAppPortableModeSupport> &support);

    explicit AppSettingsPathCodec(QSharedPointer<QtAppPortableModeSupport> support);
    Q_DISABLE_COPY_MOVE(AppSettingsPathCodec)

    QString encode(const QString &key, const QString &value) const override;
    QString decode(const QString &key, const QString &stored) const override;

private:
    const QSharedPointer<QtAppPortableModeSupport> m_support;
    const QSet<QString> m_pathKeys;
};
