#include "levelmeters.h"

#include "vesmoraiocontrol.h"

#include <QDebug>
#include <QLabel>

void LevelMeters::add(QLabel *label, Source source)
{
    m_meters.append({label, source});
}

void LevelMeters::refresh(VesmoraIoControl &device)
{
    if (!device.readMeterData(m_record)) {
        qDebug() << "Failed to read meter data from driver.";
        return;
    }
    for (const Meter &meter : std::as_const(m_meters))
        meter.label->setText(text(level(meter.source)));
}

QString LevelMeters::text(qint32 peak)
{
    return QString::number(VesmoraIoControl::peakToDb(peak), 'f', 1) + QStringLiteral(" dB");
}

qint32 LevelMeters::mean(qint32 left, qint32 right)
{
    return static_cast<qint32>(static_cast<quint32>(left) + static_cast<quint32>(right)) / 2;
}

qint32 LevelMeters::level(Source source) const
{
    switch (source) {
    case Input1:
        return m_record.levels[0];
    case Input2:
        return m_record.levels[1];
    case PhoneInput:
        break;
    }
    return mean(m_record.levels[2], m_record.levels[3]);
}
