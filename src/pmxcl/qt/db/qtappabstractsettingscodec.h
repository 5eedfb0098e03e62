#pragma once

#include <QString>

/// The form in which values of settings are stored, where it differs from the value itself. Any
/// thread.
class QtAppAbstractSettingsCodec {
public:
    QtAppAbstractSettingsCodec() = default;
    virtual ~QtAppAbstractSettingsCodec() = default;
    Q_DISABLE_COPY_MOVE(QtAppAbstractSettingsCodec)

    virtual QString encode(const QString &key, const QString &value) const = 0;
    virtual QString decode(const QString &key, const QString &stored) const = 0;
};
