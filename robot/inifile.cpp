#include "inifile.h"

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
        const qsizetype slash = entry.indexOf(u'/');
        const QString name = entry.left(slash);
        const auto known = std::find_if(sections.begin(), sections.end(),
                                        [&](const Section &one) { return one.name == name; });
        Section &section =
            known != sections.end() ? *known : sections.emplaceBack(Section{name, {}});
        section.lines << entry.mid(slash + 1);
    }
    return sections;
}

QString keyOf(const QString &line)
{
    return line.left(line.indexOf(u'='));
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

QByteArray iniFile(const QStringList &entries, IniLayout layout)
{
    QList<Section> sections = inOrderOfWriting(entries);
    if (layout == IniLayout::Sorted)
        sort(sections);
    const QString lineEnd =
        layout == IniLayout::OrderOfWriting ? QStringLiteral("\r\n") : QStringLiteral("\n");
    QStringList texts;
    for (const Section &section : std::as_const(sections))
        texts << u'[' + section.name + u']' + lineEnd + section.lines.join(lineEnd) + lineEnd;
    return texts.join(lineEnd).toUtf8();
}
