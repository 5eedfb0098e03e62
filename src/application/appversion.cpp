#include "appversion.h"

QString appVersion() { return QStringLiteral(KOVALO_VERSION); }

bool mobileVersion() { return false; }
