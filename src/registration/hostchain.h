#pragma once

#include "finding.h"

#include <QStringList>

/// Checks a host: whether it starts and answers.
Chain examineHost(const QString &hostPath, const QStringList &arguments, int timeoutMs);
