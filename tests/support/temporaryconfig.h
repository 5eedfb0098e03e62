#pragma once

#include "qtappconfigbase.h"

#include <QDir>

/// A configuration whose data folder is a test's own.
class TemporaryConfig : public QtAppConfigBase {
public:
    explicit TemporaryConfig(const QString &path) : m_path(path) { }
    QDir dataDir() const override { return QDir(m_path); }

private:
    const QString m_path;
};
