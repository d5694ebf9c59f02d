#ifndef MARKDOWNTABLES_H
#define MARKDOWNTABLES_H

#include <QList>
#include <QString>
#include <QStringList>

/// A table of a Markdown page: the titles of its columns and, row by row, its cells.
struct MarkdownTable {
    QStringList titles;
    QList<QStringList> rows;
};

/// All tables of @p page, in order. Text in fenced blocks is no table.
QList<MarkdownTable> markdownTables(const QString &page);

#endif
