#include "systemdefaultdownloadlocation.h"

#include <QStandardPaths>

QString systemDefaultDownloadLocation()
{
    return QStandardPaths::writableLocation(QStandardPaths::DownloadLocation);
}
