#include "testsimulator.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>

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

QString freshDataFolder()
{
    QString folder = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    QDir(folder).removeRecursively();
    QDir().mkpath(folder);
    return folder;
}

QStringList iniLines(const QString &fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return {};
    QStringList lines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
    lines.removeAll(QString());
    return lines;
}
