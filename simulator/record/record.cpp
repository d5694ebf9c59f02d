#include "record.h"

#include "controlprotocol.h"
#include "simstatus.h"

#include <QJsonArray>
#include <QLocale>

#include <cmath>

namespace {

constexpr int matrixSize = VESMORA_MIXER_ROWS * VESMORA_MIXER_COLUMNS;

QString hex(quint32 number, int digits)
{
    return QStringLiteral("0x")
        + QString::number(number, 16).toUpper().rightJustified(digits, u'0');
}

/// Twelve digits: the mathematics libraries of the two platforms differ in the last one.
QString gainText(double value)
{
    return QString::number(value, 'g', 12);
}

QString kindName(Record::Kind kind)
{
    switch (kind) {
    case Record::Kind::Open:
        return QStringLiteral("open");
    case Record::Kind::Close:
        return QStringLiteral("close");
    case Record::Kind::Plug:
        return QStringLiteral("plug");
    case Record::Kind::Unplug:
        return QStringLiteral("unplug");
    case Record::Kind::Lost:
        return QStringLiteral("lost");
    case Record::Kind::Request:
        break;
    }
    return QStringLiteral("request");
}

QString changeText(const MixerChange &change)
{
    const QString place = change.isOutputGain()
        ? QStringLiteral("gain[%1]").arg(change.outputGain())
        : QStringLiteral("(%1,%2)").arg(change.row()).arg(change.column());
    return place + u'=' + gainText(change.value);
}

/// What a request is called: a method, or else its numbers.
QString requestName(const Record &record)
{
    if (record.command.isEmpty())
        return hex(record.code, 8);
    const bool isNamed = record.command != QLatin1String("sendPacket")
        && record.command != QLatin1String("vendorRequest");
    if (isNamed || !record.opcode)
        return record.command;
    return record.command + u' ' + hex(*record.opcode, 2);
}

QString requestText(const Record &record)
{
    QString text = requestName(record);
    const bool isDecoded = record.channel || record.value || record.opcode;
    if (record.error == status_to_error(SIM_INFO_LENGTH_MISMATCH) && record.inputLength > 0
        && !isDecoded)
        text += QStringLiteral(" <%1 bytes>").arg(record.inputLength);
    if (record.channel)
        text += u' ' + QString::number(*record.channel);
    if (record.value)
        text += u' ' + QString::number(*record.value);
    for (const MixerChange &change : record.changes)
        text += u' ' + changeText(change);
    return text;
}

QJsonValue number(double value)
{
    return std::isfinite(value) ? QJsonValue(value) : QJsonValue(gainText(value));
}

QJsonObject changeJson(const MixerChange &change)
{
    QJsonObject json{{QStringLiteral("index"), change.index},
                     {QStringLiteral("value"), number(change.value)}};
    if (change.isOutputGain()) {
        json.insert(QStringLiteral("gain"), change.outputGain());
    } else {
        json.insert(QStringLiteral("row"), change.row());
        json.insert(QStringLiteral("column"), change.column());
    }
    return json;
}

void insertRequest(const Record &record, QJsonObject &json)
{
    json.insert(QStringLiteral("code"), hex(record.code, 8));
    json.insert(QStringLiteral("command"), record.command);
    json.insert(QStringLiteral("inputLength"), static_cast<qint64>(record.inputLength));
    json.insert(QStringLiteral("outputLength"), static_cast<qint64>(record.outputLength));
    if (record.opcode)
        json.insert(QStringLiteral("opcode"), hex(*record.opcode, 2));
    if (record.channel)
        json.insert(QStringLiteral("channel"), static_cast<qint64>(*record.channel));
    if (record.answer)
        json.insert(QStringLiteral("answer"), static_cast<qint64>(*record.answer));
    if (!record.bytes.isEmpty())
        json.insert(QStringLiteral("bytes"), QString::fromLatin1(record.bytes.toHex()));
    if (record.command != QLatin1String("sendMixerBlock"))
        return;
    QJsonArray changes;
    for (const MixerChange &change : record.changes)
        changes.append(changeJson(change));
    json.insert(QStringLiteral("changes"), changes);
}

} // namespace

bool MixerChange::isOutputGain() const
{
    return index >= matrixSize;
}

int MixerChange::outputGain() const
{
    return index - matrixSize;
}

int MixerChange::row() const
{
    return index / VESMORA_MIXER_COLUMNS;
}

int MixerChange::column() const
{
    return index % VESMORA_MIXER_COLUMNS;
}

QString Record::text() const
{
    QString text = kind == Kind::Request ? requestText(*this) : kindName(kind);
    if (kind == Kind::Plug)
        text += QStringLiteral(" %1 %2").arg(value.value_or(0)).arg(bus);
    else if (kind == Kind::Lost)
        text += u' ' + QString::number(value.value_or(0));
    if (error != 0)
        text += QStringLiteral(" !%1").arg(error);
    return text;
}

QJsonObject Record::toJson() const
{
    QJsonObject json{{QStringLiteral("number"), static_cast<qint64>(number)},
                     {QStringLiteral("ms"), static_cast<qint64>(ms)},
                     {QStringLiteral("kind"), kindName(kind)},
                     {QStringLiteral("bus"), static_cast<qint64>(bus)},
                     {QStringLiteral("text"), text()},
                     {QStringLiteral("error"), static_cast<qint64>(error)}};
    if (handle != 0)
        json.insert(QStringLiteral("handle"), static_cast<qint64>(handle));
    if (value)
        json.insert(QStringLiteral("value"), *value);
    if (const char *name = status_name(error); error != 0 && name)
        json.insert(QStringLiteral("errorName"), QString::fromLatin1(name));
    if (kind == Kind::Open) {
        json.insert(QStringLiteral("access"), hex(access, 8));
        json.insert(QStringLiteral("share"), static_cast<qint64>(share));
    } else if (kind == Kind::Request) {
        insertRequest(*this, json);
    }
    return json;
}
