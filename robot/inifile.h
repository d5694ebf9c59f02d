#ifndef INIFILE_H
#define INIFILE_H

#include <QByteArray>
#include <QStringList>

/// How Qt's settings lay out an INI file on a platform.
enum class IniLayout {
    Sorted,        ///< by section and key, whatever was written first
    OrderOfWriting ///< with the line ends of Windows
};

/// An INI file with these entries, "Section/Key=Value", given in the order of their first writing.
QByteArray iniFile(const QStringList &entries, IniLayout layout);

#endif
