#pragma once

#include <QString>

/// The program's version as four decimal numbers: "6.25.0.6016".
QString appVersion();

/// Whether this is a build for a mobile device; desktop builds answer false.
bool mobileVersion();
