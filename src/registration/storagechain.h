#pragma once

#include "finding.h"

#include <QString>

/// Checks the settings database and the download folder. "hostFolder" is the host's folder, where a
/// portable installation keeps them.
Chain examineStorage(const QString &hostFolder);
