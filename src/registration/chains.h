#pragma once

#include "finding.h"

#include <QString>
#include <QStringList>

/// Checks a host: whether it starts and answers.
Chain examineHost(const QString &hostPath, const QStringList &arguments, int timeoutMs);

/// Checks the application that is installed beside a host.
Chain examineApplication(const QString &hostFolder, int timeoutMs);

/// Checks the settings database and the download folder. "hostFolder" is the host's folder, where a
/// portable installation keeps them.
Chain examineStorage(const QString &hostFolder);
