#ifndef CONTRACTCOMPARISON_H
#define CONTRACTCOMPARISON_H

#include <QString>
#include <QStringList>

/// What is wrong with the tables of the Markdown text @p page, given the text of the headers: rows
/// whose numbers differ, rows that the headers know nothing of, what the page lacks, and tables and
/// numbers that nobody checks. Empty when they agree.
QStringList contractDifferences(const QString &page, const QString &header);

#endif
