#pragma once

#include "finding.h"

#include <QString>

/// The links of the application that lies beside a host.
Chain examineApplication(const QString &hostFolder, int timeoutMs);
