#include "inifile.h"

#include <QDir>
#include <QFileInfo>
#include <QOperatingSystemVersion>

#include <algorithm>

namespace {

struct Section {
    QString name;
    QStringList lines;
};

QList<Section> inOrderOfWriting(const QStringList &entries)
{
    QList<Section> sections;
    for (const QString &entry : entries) {
        const QString name = entry.section('/', 0, 0);
        const auto known = std::find_if(sections.begin(), sections.end(),
                                        [&](const Section &one) { return one.name == name; });
        Section &section =
            known != sections.end() ? *known : sections.emplaceBack(Section{name, {}});
        section.lines << entry.section('/', 1);
    }
    return sections;
}

QString keyOf(const QString &line)
{
    return line.section('=', 0, 0);
}

QStringList linesOf(const QByteArray &text)
{
    QStringList lines = QString::fromUtf8(text).remove('\r').split('\n');
    lines.removeAll(QString());
    return lines;
}

QStringList entriesOf(const QStringList &lines)
{
    QStringList entries;
    QString section;
    for (const QString &line : lines) {
        if (line.startsWith('['))
            section = line.mid(1, line.size() - 2) + '/';
        else
            entries << section + line;
    }
    return entries;
}

void sort(QList<Section> &sections)
{
    std::sort(sections.begin(), sections.end(),
              [](const Section &a, const Section &b) { return a.name < b.name; });
    for (Section &section : sections) {
        std::sort(section.lines.begin(), section.lines.end(),
                  [](const QString &a, const QString &b) { return keyOf(a) < keyOf(b); });
    }
}

} // namespace

IniLayout nativeIniLayout()
{
    const auto system = QOperatingSystemVersion::currentType();
    return system == QOperatingSystemVersion::Windows ? IniLayout::OrderOfWriting
                                                      : IniLayout::Sorted;
}

QByteArray iniText(const QStringList &entries, IniLayout layout)
{
    QList<Section> sections = inOrderOfWriting(entries);
    if (layout == IniLayout::Sorted)
        sort(sections);
    const QString lineEnd = layout == IniLayout::OrderOfWriting ? "\r\n" : "\n";
    QStringList texts;
    for (const Section &section : std::as_const(sections))
        texts << '[' + section.name + ']' + lineEnd + section.lines.join(lineEnd) + lineEnd;
    return texts.join(lineEnd).toUtf8();
}

QStringList asStored(const QStringList &lines)
{
    return linesOf(iniText(entriesOf(lines)));
}

IniFile::IniFile(const QString &name)
    : m_name(name)
{ }

QByteArray IniFile::text() const
{
    QFile file(m_name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList IniFile::lines() const
{
    return linesOf(text());
}

QStringList IniFile::entries() const
{
    QStringList entries = entriesOf(lines());
    entries.sort();
    return entries;
}

QMap<QString, QString> IniFile::values() const
{
    QMap<QString, QString> values;
    const QStringList all = entriesOf(lines());
    for (const QString &entry : all)
        values.insert(keyOf(entry), entry.section('=', 1));
    return values;
}

bool IniFile::write(const QByteArray &text) const
{
    QFile file(m_name);
    return QDir().mkpath(QFileInfo(file).path()) && file.open(QIODevice::WriteOnly)
        && file.write(text) == text.size();
}

bool IniFile::write(const QStringList &entries) const
{
    return write(iniText(entries, IniLayout::OrderOfWriting));
}

bool IniFile::write(const QMap<QString, QString> &values) const
{
    QStringList entries;
    for (auto it = values.cbegin(); it != values.cend(); ++it)
        entries << it.key() + '=' + it.value();
    return write(entries);
}
