#pragma once

#include <QString>

/// Encodes and decodes those settings that are stored in another form than their value. Any thread.
class QtAppAbstractSettingsCodec {
public:
    QtAppAbstractSettingsCodec() = default;
    virtual ~QtAppAbstractSettingsCodec() = default;
    Q_DISABLE_COPY_MOVE(QtAppAbstractSettingsCodec)

    virtual QString encode(const QString &key, const QString &value) const = 0;
    virtual QString decode(const QString &key, const QString &stored) const = 0;
};
