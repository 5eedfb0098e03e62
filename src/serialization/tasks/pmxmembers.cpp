#include "pmxmembers.h"

#include "qtappdefaultlogger.h"

void pmxMembers::logUnreadable(const char *key)
{
    logLine(1,
            QStringLiteral("[pmxMembers]: WARNING: \"%1\" is of the wrong type and passed over")
                .arg(QLatin1String(key)));
}
