#pragma once

#include "finding.h"

#include <QString>

/// Checks the application that is installed beside a host.
Chain examineApplication(const QString &hostFolder, int timeoutMs);
