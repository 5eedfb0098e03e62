#pragma once

#include <QString>

/// The name of the local socket on which this user's main application serves its clients.
QString appServerName();
