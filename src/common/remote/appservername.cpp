#include "appservername.h"

#include "currentuserservername.h"

QString appServerName() { return currentUserServerName(QStringLiteral("kov6fs")); }
