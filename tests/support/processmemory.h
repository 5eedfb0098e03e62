#pragma once

#include <QByteArray>
#include <QFile>
#include <QtGlobal>

#include <unistd.h>

/// The size of the process's address space in bytes, resident or not.
inline qint64 reservedMemory()
{
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    return file.readAll().split(' ').constFirst().toLongLong() * ::sysconf(_SC_PAGESIZE);
}
