#include "processfigures.h"

#include <QDir>
#include <QFile>

#include <unistd.h>

int openHandleCount()
{
    return static_cast<int>(QDir("/proc/self/fd").count());
}

qint64 residentBytes()
{
    QFile file("/proc/self/statm");
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    return file.readAll().split(' ').value(1).toLongLong() * sysconf(_SC_PAGESIZE);
}
