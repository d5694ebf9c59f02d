#include "testsimulator.h"

#include <QProcess>
#include <QTemporaryDir>

namespace {

constexpr int startTimeout = 20000; // milliseconds

} // namespace

class TestSimulator::Lane
{
public:
    QTemporaryDir deviceFolder;
    QProcess process;
};

TestSimulator::TestSimulator()
    : m_lane(std::make_unique<Lane>())
{
    qputenv("VESMORA_HOST_DIR", m_lane->deviceFolder.path().toLocal8Bit());
    QProcess &process = m_lane->process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(VESMORA_SIM_PROGRAM, QStringList());
    QByteArray output;
    while (!output.contains("ready") && process.waitForReadyRead(startTimeout))
        output += process.readAllStandardOutput();
    if (!output.contains("ready") || !open())
        qFatal("The simulator did not start: %s", qPrintable(errorString()));
}

TestSimulator::~TestSimulator()
{
    close();
    m_lane->process.terminate();
    m_lane->process.waitForFinished();
}

bool TestSimulator::canRefuseOpens() const
{
    return true;
}
