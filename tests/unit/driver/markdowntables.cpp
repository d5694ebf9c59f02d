#include "markdowntables.h"

#include <utility>

namespace {

QStringList cellsOf(const QString &line)
{
    QStringList cells;
    const QStringList parts = line.trimmed().split(u'|');
    for (const QString &part : parts.sliced(1, parts.size() - 2))
        cells.append(part.trimmed());
    return cells;
}

bool isRow(const QString &line)
{
    return line.size() > 1 && line.startsWith(u'|') && line.endsWith(u'|');
}

bool isRule(const QString &line)
{
    return line.startsWith("|---");
}

} // namespace

QList<MarkdownTable> markdownTables(const QString &page)
{
    QList<MarkdownTable> tables;
    bool isInTable = false;
    bool isFenced = false;
    const QStringList lines = page.split(u'\n');
    for (const QString &line : lines) {
        if (line.startsWith("```"))
            isFenced = !isFenced;
        if (isFenced || !isRow(line))
            isInTable = false;
        else if (!std::exchange(isInTable, true))
            tables.append({cellsOf(line), {}});
        else if (!isRule(line))
            tables.last().rows.append(cellsOf(line));
    }
    return tables;
}
