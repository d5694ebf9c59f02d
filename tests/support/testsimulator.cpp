#include "testsimulator.h"

QStringList TestSimulator::requests(bool withMeters)
{
    QStringList lines;
    const QList<Record> entries = record();
    for (const Record &entry : entries) {
        if (entry.kind == Record::Kind::Request
            && (withMeters || entry.code != VESMORA_READ_METER_DATA))
            lines.append(entry.text());
    }
    return lines;
}

QStringList TestSimulator::events()
{
    QStringList lines;
    const QList<Record> entries = record();
    for (const Record &entry : entries)
        lines.append(entry.text());
    return lines;
}
