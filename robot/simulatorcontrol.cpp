#include "simulatorcontrol.h"

#include <QJsonDocument>

RecordEntry::RecordEntry(const QJsonObject &object)
    : m_object(object)
{ }

QString RecordEntry::text() const
{
    return m_object.value(QStringLiteral("text")).toString();
}

QString RecordEntry::kind() const
{
    return m_object.value(QStringLiteral("kind")).toString();
}

QString RecordEntry::command() const
{
    return m_object.value(QStringLiteral("command")).toString();
}

int RecordEntry::handle() const
{
    return m_object.value(QStringLiteral("handle")).toInt();
}

QByteArray RecordEntry::bytes() const
{
    return QByteArray::fromHex(m_object.value(QStringLiteral("bytes")).toString().toLatin1());
}

SimulatorControl::SimulatorControl(Run run)
    : m_run(std::move(run))
{ }

bool SimulatorControl::plug(const QString &model, int bus)
{
    return run({QStringLiteral("plug"), model, QStringLiteral("--bus"), QString::number(bus)});
}

bool SimulatorControl::unplug()
{
    return run({QStringLiteral("unplug")});
}

bool SimulatorControl::reset()
{
    return run({QStringLiteral("reset")});
}

bool SimulatorControl::clearRecord()
{
    return run({QStringLiteral("clear-record")});
}

bool SimulatorControl::fail(const QString &command, int count)
{
    return run({QStringLiteral("fail"), command, QStringLiteral("1"), QStringLiteral("--count"),
                QString::number(count)});
}

bool SimulatorControl::clearFaults()
{
    return run({QStringLiteral("clear-faults")});
}

bool SimulatorControl::setLevels(const QList<qint32> &levels)
{
    QStringList arguments{QStringLiteral("meter")};
    for (qsizetype i = 0; i < levels.size(); ++i)
        arguments << QStringLiteral("%1=%2").arg(i).arg(levels.at(i));
    return run(arguments);
}

bool SimulatorControl::setValue(const QString &name, int value)
{
    return run({QStringLiteral("set"), name, QString::number(value)});
}

bool SimulatorControl::setFirmware(const QString &version)
{
    return run({QStringLiteral("firmware"), version});
}

QList<RecordEntry> SimulatorControl::record()
{
    QList<RecordEntry> entries;
    const QList<QByteArray> lines = recordLines().split('\n');
    for (const QByteArray &line : lines) {
        if (!line.isEmpty())
            entries << RecordEntry(QJsonDocument::fromJson(line).object());
    }
    return entries;
}

QByteArray SimulatorControl::recordLines()
{
    QByteArray output;
    run({QStringLiteral("record")}, &output);
    return output;
}

bool SimulatorControl::run(const QStringList &arguments, QByteArray *output)
{
    const CommandResult result = m_run(arguments);
    if (output)
        *output = result.output;
    if (!result.succeeded())
        m_error = QStringLiteral("%1: exit code %2: %3")
                      .arg(arguments.join(u' '))
                      .arg(result.exitCode)
                      .arg(QString::fromUtf8(result.errorOutput).trimmed());
    return result.succeeded();
}
