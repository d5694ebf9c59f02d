#include "mixermodel.h"

#include <cmath>

namespace {

constexpr int silenceDb = -80;

double gainOf(int db)
{
    return db == silenceDb ? 0.0 : std::pow(10.0, db / 20.0);
}

QString filled(QString text, int db, const QString &gain)
{
    return text.replace(QStringLiteral("{db}"), QString::number(db))
        .replace(QStringLiteral("{half}"), QString::number(2 * db))
        .replace(QStringLiteral("{gain}"), gain);
}

} // namespace

QString gainText(int db)
{
    return QString::number(gainOf(db), 'g', 12);
}

QString KnobModel::sent(int from, int to) const
{
    const bool isBlock = sends.startsWith(sameBlock);
    return isBlock && from == to ? sameBlock : filled(sends, to, gainText(to));
}

QStringList KnobModel::logged(int db) const
{
    QStringList lines;
    for (const QString &line : logs)
        lines << filled(line, db, QString::number(gainOf(db)));
    return lines;
}

QString diagonal(int row, int column, int length)
{
    QString text;
    for (int i = 0; i < length; ++i)
        text += QStringLiteral(" (%1,%2)=1").arg(row + i).arg(column + i);
    return text;
}

QString firstBlock(const QString &inputs, const QList<int> &pairs)
{
    QString text = sameBlock + diagonal(4, 0, 8) + inputs;
    for (const int row : pairs)
        text += diagonal(row, 0, 2);
    text += diagonal(160, 0, 8);
    for (int output = 0; output < 96; ++output)
        text += QStringLiteral(" gain[%1]=1").arg(output);
    return text;
}
