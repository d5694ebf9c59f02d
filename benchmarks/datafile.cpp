#include "datafile.h"

#include "comparison.h"

#include <QFile>
#include <QStandardPaths>

QString dataFile(const QString &name)
{
    return QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) + u'/' + name;
}

QByteArray contentsOf(const QString &name)
{
    QFile file(dataFile(name));
    require(file.open(QIODevice::ReadOnly), file.fileName() + u' ' + file.errorString());
    return file.readAll();
}
