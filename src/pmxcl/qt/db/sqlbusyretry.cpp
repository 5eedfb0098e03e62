#include "sqlbusyretry.h"

#include <QString>

bool isBusyError(const QSqlError &error)
{
    if (!error.isValid())
        return false;
    // SQLITE_BUSY and the extended codes that have it as their lowest byte, but for
    // SQLITE_BUSY_SNAPSHOT, which lasts as long as the transaction
    // (https://sqlite.org/rescode.html).
    const int busy = 5;
    const int busySnapshot = 517;
    const int code = error.nativeErrorCode().toInt();
    return (code & 0xff) == busy && code != busySnapshot;
}
