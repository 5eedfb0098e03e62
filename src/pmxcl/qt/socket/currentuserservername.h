#pragma once

#include <QString>

/// The name of a per-user local server: "base" followed by the real user id of the process, such as
/// "kov6fs1000".
QString currentUserServerName(const QString &base);
