#include "observed.h"

#include "logtext.h"

#include <QDir>
#include <QStandardPaths>
#include <QTest>

Observed::Observed(Device device)
{
    // The native lane looks there for pipes, as a simulator has it do otherwise.
    if (device == Device::None)
        qputenv("VESMORA_HOST_DIR", m_deviceFolder.path().toLocal8Bit());
    else
        m_simulator = std::make_unique<TestSimulator>();
}

Observed::~Observed() = default;

void Observed::observe()
{
    if (m_simulator)
        QVERIFY2(m_simulator->reset(), qPrintable(m_simulator->errorString()));
    emptyDataFolder();
    m_log.reset(); // of two captures, the later one ends first
    m_log = std::make_unique<LogCapture>();
}

void Observed::stopObserving()
{
    m_log.reset();
    emptyDataFolder();
}

void Observed::plug(quint32 model)
{
    QVERIFY2(m_simulator->plug(model), qPrintable(m_simulator->errorString()));
    takeRecord();
}

void Observed::unplug()
{
    QVERIFY2(m_simulator->unplug(), qPrintable(m_simulator->errorString()));
    takeRecord();
}

quint32 Observed::openHandles()
{
    return m_simulator ? m_simulator->state().openHandles : 0;
}

QStringList Observed::takeSent()
{
    QStringList requests = m_simulator->requests();
    m_simulator->clearRecord();
    return requests;
}

QStringList Observed::takeEvents()
{
    QStringList lines;
    const QList<Record> records = takeRecord();
    for (const Record &record : records)
        lines << record.text();
    return lines;
}

QList<Record> Observed::takeRecord()
{
    // A round trip after the closing of a connection finds that closing recorded.
    m_simulator->state();
    QList<Record> records = m_simulator->record();
    m_simulator->clearRecord();
    return records;
}

QStringList Observed::log() const
{
    return withoutAddresses(withoutPlatformRemarks(m_log->lines()));
}

QStringList Observed::takeLog()
{
    return withoutAddresses(withoutPlatformRemarks(m_log->take()));
}

QString Observed::dataFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
}

void Observed::emptyDataFolder()
{
    QDir(dataFolder()).removeRecursively();
    QDir().mkpath(dataFolder());
}

IniFile Observed::iniFile(const QString &name)
{
    return IniFile(dataFolder() + '/' + name);
}
