#ifndef DATAFILE_H
#define DATAFILE_H

#include <QByteArray>
#include <QString>

/// The path of a file in the folder where the product keeps its files.
QString dataFile(const QString &name);

/// All that stands in such a file, which has to be there.
QByteArray contentsOf(const QString &name);

#endif
