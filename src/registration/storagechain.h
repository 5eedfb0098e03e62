#pragma once

#include "finding.h"

#include <QString>

/// The links of what the host and the application keep: settings, and the folder of downloads.
/// "hostFolder" is where the host lies: a portable installation keeps them there.
Chain examineStorage(const QString &hostFolder);
