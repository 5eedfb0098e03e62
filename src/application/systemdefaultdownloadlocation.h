#pragma once

#include <QString>

/// The folder into which the user's downloads go by default
/// (QStandardPaths::DownloadLocation), as the platform reports it. Nothing is created.
QString systemDefaultDownloadLocation();
