#pragma once

#include "finding.h"

#include <QStringList>

/// The links of a host: that it starts and answers.
Chain examineHost(const QString &hostPath, const QStringList &arguments, int timeoutMs);
