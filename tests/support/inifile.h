#ifndef INIFILE_H
#define INIFILE_H

#include <QByteArray>
#include <QMap>
#include <QStringList>

/// How Qt's settings lay out an INI file on a platform.
enum class IniLayout {
    Sorted,        ///< by section and key, whatever was written first
    OrderOfWriting ///< with the line ends of Windows
};

/// That of the platform we run on.
IniLayout nativeIniLayout();

/// An INI file with these entries, "Section/Key=Value", given in the order of their first writing.
QByteArray iniText(const QStringList &entries, IniLayout layout = nativeIniLayout());

/// The lines of an INI file in the order in which they were first written, brought into the order
/// in which Qt stores them on the platform we run on.
QStringList asStored(const QStringList &lines);

/// An INI file as it is on disk now, read and written without Qt's settings.
class IniFile
{
public:
    explicit IniFile(const QString &name);

    QString name() const { return m_name; }
    /// Everything, to the byte; empty when there is no file.
    QByteArray text() const;
    /// The lines that hold keys or section names, in order.
    QStringList lines() const;
    /// "Section/Key=Value" of each key, sorted.
    QStringList entries() const;
    /// The values by "Section/Key".
    QMap<QString, QString> values() const;

    /// Makes the file's folder, too.
    bool write(const QByteArray &text) const;
    /// Writes "Section/Key=Value" entries, which stand there in this order on every platform.
    bool write(const QStringList &entries) const;
    /// Writes values by "Section/Key".
    bool write(const QMap<QString, QString> &values) const;

private:
    QString m_name;
};

#endif
