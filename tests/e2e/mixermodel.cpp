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

/// A button of a microphone input whose log is the same for every channel.
ButtonModel inputButton(const char *name, int place, const QString &key, const QString &sends,
                        const QString &title)
{
    const QString clicked = title + QStringLiteral(" Button Clicked ");
    const QString switched = title + QStringLiteral(" switched for channel 1.");
    return {name,
            place,
            key,
            sends + QStringLiteral(" 1"),
            sends + QStringLiteral(" 0"),
            {clicked + QStringLiteral("true"), switched},
            {clicked + QStringLiteral("false"), switched}};
}

QString blockWith(const QStringList &entries, const QString &value)
{
    QString text = sameBlock;
    for (const QString &entry : entries)
        text += u' ' + entry + u'=' + value;
    return text;
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

KnobModel gainKnob(const char *name, int place, const QString &key, int maximum, int channel)
{
    return {name,
            place,
            key,
            0,
            maximum,
            10,
            QStringLiteral("setMicVolume %1 {half}").arg(channel),
            {QStringLiteral("Mic volume set to: {db}")}};
}

ButtonModel padButton(const char *name, int place, const QString &key, int channel)
{
    return inputButton(name, place, key, QStringLiteral("setMic20dB %1").arg(channel),
                       QStringLiteral("Mic 20dB"));
}

ButtonModel phantomButton(const char *name, int place, const QString &key, int channel)
{
    return inputButton(name, place, key, QStringLiteral("setMic48V %1").arg(channel),
                       QStringLiteral("Mic 48V"));
}

ButtonModel monitorButton(const char *name, int place, const QString &key,
                          const QStringList &entries)
{
    return {name,
            place,
            key,
            blockWith(entries, QStringLiteral("1")),
            blockWith(entries, QStringLiteral("0")),
            {QStringLiteral("Monitor Mic set to: 1")},
            {QStringLiteral("Monitor Mic set to: 0")}};
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
