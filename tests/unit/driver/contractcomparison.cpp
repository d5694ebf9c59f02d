#include "contractcomparison.h"

#include "contractheader.h"
#include "markdowntables.h"
#include "vesmoraiocontrol.h"

#include <QRegularExpression>
#include <QSet>

namespace {

using Cells = QStringList;

QString hex(quint32 number, int digits)
{
    return QString("0x") + QString::number(number, 16).toUpper().rightJustified(digits, u'0');
}

QString quoted(const QString &name)
{
    return u'`' + name + u'`';
}

QString unquoted(const QString &cell)
{
    return QString(cell).remove(u'`');
}

/// A digit after a letter, as in RX1, makes no number.
bool hasNumber(const QString &cell)
{
    static const QRegularExpression number("(?<![A-Za-z0-9_])[0-9]");
    return number.match(cell).hasMatch();
}

class Comparison
{
public:
    Comparison(const QString &page, const QString &header);
    QStringList differences;

private:
    void check(const MarkdownTable &table);
    void checkRow(const QString &kind, const Cells &cells);
    Cells expected(const QString &kind, const Cells &cells);

    Cells controlCode(const QString &name) const;
    Cells constant(const QString &name, const Cells &cells) const;
    Cells opcode(const QString &name, const Cells &cells) const;
    Cells object(const QString &name) const;
    Cells structure(const QString &name) const;
    Cells field(const QString &name) const;
    Cells crosspoint(const Cells &cells) const;
    Cells outputGain(const Cells &cells) const;
    Cells level(const Cells &cells) const;

    QString packetOf(quint32 opcode, const QString &argument, const QString &example) const;
    quint32 value(const char *name) const;
    void complainAboutMissing();
    void complainUnlessNamed(const QString &name);

    const ContractHeader m_header;
    QSet<QString> m_named;
};

Comparison::Comparison(const QString &page, const QString &header)
    : m_header(readContractHeader(header))
{
    for (const QString &text : m_header.unread)
        differences.append("cannot be read in the header: " + text);
    const QList<MarkdownTable> tables = markdownTables(page);
    for (const MarkdownTable &table : tables)
        check(table);
    complainAboutMissing();
}

void Comparison::check(const MarkdownTable &table)
{
    for (const Cells &cells : table.rows) {
        if (cells.size() == table.titles.size())
            checkRow(table.titles.first(), cells);
        else
            differences.append("not as many cells as titles: " + cells.join(" | "));
    }
}

/// The first cells of a row are determined by the header; those after them are prose.
void Comparison::checkRow(const QString &kind, const Cells &cells)
{
    const Cells wanted = expected(kind, cells);
    const Cells found = cells.first(qMin(cells.size(), wanted.size()));
    if (found != wanted)
        differences.append("found: " + found.join(" | ") + ", expected: " + wanted.join(" | "));
    for (const QString &cell : cells.sliced(found.size())) {
        if (hasNumber(cell))
            differences.append("a number that nobody checks: " + cell);
    }
    m_named.insert(unquoted(cells.first()));
}

/// Empty for a table that is prose throughout.
Cells Comparison::expected(const QString &kind, const Cells &cells)
{
    const QString name = unquoted(cells.first());
    const auto plain = [&](const QString &text) { return Cells{cells.first(), text}; };
    if (kind == "Control code")
        return controlCode(name);
    if (kind == "Constant")
        return constant(name, cells);
    if (kind == "Opcode")
        return opcode(name, cells);
    if (kind == "Device" || kind == "Pipe")
        return object(name);
    if (kind == "Structure")
        return structure(name);
    if (kind == "Field")
        return field(name);
    if (kind == "Row")
        return crosspoint(cells);
    if (kind == "Output gain")
        return outputGain(cells);
    if (kind == "Level")
        return level(cells);
    if (kind == "Decibels")
        return plain(QString::number(VesmoraIoControl::dbToGain(name.toDouble()), 'g', 10));
    if (kind == "Peak")
        return plain(QString::number(VesmoraIoControl::peakToDb(name.toInt()), 'f', 1) + " dB");
    return {};
}

Cells Comparison::controlCode(const QString &name) const
{
    if (!m_header.controlCodes.contains(name))
        return {"no such control code"};
    const auto code = m_header.controlCodes.value(name);
    return {quoted(name), hex(VESMORA_CONTROL_CODE(code.function), 8), hex(code.function, 3),
            QString::number(code.inputLength), QString::number(code.outputLength)};
}

/// In the notation that the page has chosen.
Cells Comparison::constant(const QString &name, const Cells &cells) const
{
    if (!m_header.constants.contains(name))
        return {"no such constant"};
    const quint32 number = m_header.constants.value(name);
    const bool isHex = cells.at(1).startsWith("0x");
    const auto digits = static_cast<int>(cells.at(1).size()) - 2;
    return {quoted(name), isHex ? hex(number, digits) : QString::number(number)};
}

Cells Comparison::opcode(const QString &name, const Cells &cells) const
{
    if (!m_header.constants.contains(name) || cells.size() < 7)
        return {"no such opcode"};
    const quint32 number = m_header.constants.value(name);
    const bool hasChannel = cells.at(2) != "none";
    const bool hasValue = cells.at(2) == "length";
    return {quoted(name),
            hex(number, 2),
            cells.at(2),
            hasChannel ? "channel" : "none",
            hasValue ? "value" : "none",
            cells.at(5),
            quoted(packetOf(number, cells.at(2), cells.at(5)))};
}

/// The first bytes of the packet for a call such as "setMic48V(1, 1)".
QString Comparison::packetOf(quint32 opcode, const QString &argument, const QString &example) const
{
    static const QRegularExpression call("\\((\\d+), (-?\\d+)\\)");
    const auto match = call.match(example);
    const int channel = match.captured(1).toInt();
    const int value = match.captured(2).toInt();
    const bool isVolume = argument == "length";

    QByteArray bytes(m_header.structures.value("CommandPacket").fields.value("padding").offset, 0);
    const auto put = [&](const char *field, quint32 byte) {
        const auto fields = m_header.structures.value("CommandPacket").fields;
        bytes[fields.value(field).offset] = static_cast<char>(byte);
    };
    put("kind", this->value("VESMORA_PACKET_KIND"));
    put("opcode", opcode);
    put("argument", isVolume ? this->value("VESMORA_VOLUME_VALUE_LENGTH") : quint32(value));
    put("channel", quint32(channel));
    put("valueLow", isVolume ? quint32(value) : 0);
    put("valueHigh", isVolume ? quint32(value) >> 8 : 0);
    return QString::fromLatin1(bytes.toHex(' ')).toUpper();
}

Cells Comparison::object(const QString &name) const
{
    if (!m_header.names.contains(name))
        return {"no such object"};
    return {quoted(name), quoted(m_header.names.value(name))};
}

Cells Comparison::structure(const QString &name) const
{
    if (!m_header.structures.contains(name))
        return {"no such structure"};
    return {quoted(name), QString::number(m_header.structures.value(name).size)};
}

Cells Comparison::field(const QString &name) const
{
    const auto fields = m_header.structures.value(name.section(u'.', 0, 0)).fields;
    const QString fieldName = name.section(u'.', 1);
    if (!fields.contains(fieldName))
        return {"no such field"};
    const auto field = fields.value(fieldName);
    return {quoted(name), QString::number(field.offset), QString::number(field.length)};
}

Cells Comparison::crosspoint(const Cells &cells) const
{
    const quint32 row = cells.at(0).toUInt();
    const quint32 column = cells.at(1).toUInt();
    if (row >= value("VESMORA_MIXER_ROWS") || column >= value("VESMORA_MIXER_COLUMNS"))
        return {"no such crosspoint"};
    const quint32 index = row * value("VESMORA_MIXER_COLUMNS") + column;
    return {QString::number(row), QString::number(column), QString::number(index),
            QString::number(index * sizeof(double))};
}

Cells Comparison::outputGain(const Cells &cells) const
{
    const quint32 gain = cells.at(0).toUInt();
    if (gain >= value("VESMORA_OUTPUT_GAINS"))
        return {"no such output gain"};
    const quint32 index = value("VESMORA_MIXER_ROWS") * value("VESMORA_MIXER_COLUMNS") + gain;
    return {QString::number(gain), QString::number(index), QString::number(index * sizeof(double)),
            QString::number(value("VESMORA_FIRST_OUTPUT_ROW") + gain)};
}

Cells Comparison::level(const Cells &cells) const
{
    const quint32 level = cells.at(0).toUInt();
    if (level >= value("VESMORA_METER_LEVELS"))
        return {"no such level"};
    return {QString::number(level), QString::number(level * sizeof(qint32))};
}

quint32 Comparison::value(const char *name) const
{
    return m_header.constants.value(name);
}

void Comparison::complainAboutMissing()
{
    for (const QString &name : m_header.controlCodes.keys())
        complainUnlessNamed(name);
    for (const QString &name : m_header.constants.keys())
        complainUnlessNamed(name);
    for (const QString &name : m_header.names.keys())
        complainUnlessNamed(name);
    for (auto it = m_header.structures.cbegin(); it != m_header.structures.cend(); ++it) {
        complainUnlessNamed(it.key());
        for (const QString &field : it->fields.keys())
            complainUnlessNamed(it.key() + u'.' + field);
    }
}

void Comparison::complainUnlessNamed(const QString &name)
{
    if (!m_named.contains(name))
        differences.append("missing on the page: " + name);
}

} // namespace

QStringList contractDifferences(const QString &page, const QString &header)
{
    return Comparison(page, header).differences;
}
