#include "processfigures.h"

#include <QDir>
#include <QFile>

#include <unistd.h>

int openHandleCount()
{
    return static_cast<int>(QDir(QStringLiteral("/proc/self/fd")).count());
}

qint64 residentBytes()
{
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    return file.readAll().split(' ').value(1).toLongLong() * sysconf(_SC_PAGESIZE);
}
