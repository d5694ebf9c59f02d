#include "mainwindow.h"
#include "panelmodel.h"
#include "shellfixture.h"
#include "windowview.h"

#include <QTest>
#include <QTimer>

namespace {

const QString firmware = "2025093001";

/// What goes wrong, in the order in which a search comes upon it.
enum Fault {
    ProbeOpen,
    ProbeRead,
    EngineOpen,
    PanelOpen,
    FirmwareRead,
    PresenceOpen,
    PresenceRead
};

struct FaultRow {
    Fault fault;
    const char *command;
    int nth;
};

constexpr FaultRow faults[] = {
    {ProbeOpen, "open", 1},
    {ProbeRead, "getDevicePid", 1},
    {EngineOpen, "open", 2},
    {PanelOpen, "open", 3},
    {FirmwareRead, "getFirmwareVersion", 1},
    {PresenceOpen, "open", 4},
    {PresenceRead, "getDevicePid", 2},
};

/// Everything that can be seen of a search and the poll after it.
struct Outcome {
    QStringList log;
    QStringList traffic;
    QStringList content;
    QString title = "Vesmora Driver";
    bool detects = true;
    bool polls = false;
};

} // namespace

/// Makes each step of a search fail, for each model, and each command that others send meanwhile.
class tst_DetectionFaults : public ShellFixture
{
    Q_OBJECT

private slots:
    void eachStepMayFail_data();
    void eachStepMayFail();
    void noFailingEngineOrPanelCommandStopsTheSearch_data();
    void noFailingEngineOrPanelCommandStopsTheSearch();
    void cleanupTestCase();

private:
    Outcome expected(const PanelModel &model, Fault fault, const PanelStart &start) const;
    Outcome withoutDevice(Fault fault) const;
    Outcome withDevice(const PanelModel &model, Fault fault, const PanelStart &start) const;

    int m_injected = 0;
};

void tst_DetectionFaults::eachStepMayFail_data()
{
    QTest::addColumn<PanelModel>("model");
    QTest::addColumn<int>("fault");
    for (const PanelModel &model : allPanelModels()) {
        for (int fault = 0; fault < int(std::size(faults)); ++fault) {
            QTest::addRow("%s: %s number %d", qPrintable(model.name), faults[fault].command,
                          faults[fault].nth)
                << model << fault;
        }
    }
}

Outcome tst_DetectionFaults::withoutDevice(Fault fault) const
{
    Outcome outcome;
    outcome.log = QStringList{"Device PID: 0"};
    outcome.content = QStringList{"声卡未连接！"};
    if (fault == ProbeOpen)
        outcome.traffic = QStringList{"open !31"};
    else
        outcome.traffic = on(1, {"open", "getDevicePid !31", "close"});
    return outcome;
}

Outcome tst_DetectionFaults::expected(const PanelModel &model, Fault fault,
                                      const PanelStart &start) const
{
    if (fault == ProbeOpen || fault == ProbeRead)
        return withoutDevice(fault);
    if (fault != EngineOpen)
        return withDevice(model, fault, start);
    Outcome outcome;
    outcome.log = QStringList{QString("Device PID: %1").arg(model.identifier()),
                              "Failed to create device in rx1.",
                              "Failed to connect to driver in settings window."};
    outcome.traffic =
        on(1, {"open", "getDevicePid"}) + QStringList{"open !31"} + on(2, {"open", "getDevicePid"});
    outcome.polls = true;
    return outcome;
}

Outcome tst_DetectionFaults::withDevice(const PanelModel &model, Fault fault,
                                        const PanelStart &start) const
{
    Outcome outcome;
    outcome.content = QStringList{model.name};
    outcome.log = QStringList{QString("Device PID: %1").arg(model.identifier())} + firstEngineLog();
    outcome.traffic =
        on(1, {"open", "getDevicePid"}) + on(2, {"open"}) + on(2, firstEngineRequests());
    int connection = 3;
    if (fault == PanelOpen) {
        outcome.log << model.createFailure();
        outcome.traffic << "open !31";
    } else {
        outcome.log << start.log;
        outcome.traffic << on(connection, {"open"}) << on(connection, start.requests);
        ++connection;
    }
    outcome.log << model.layoutLog();
    if (fault == FirmwareRead) {
        outcome.log << "Failed to get firmware version.";
        outcome.traffic << on(1, {"getFirmwareVersion !31"});
        outcome.content << "获取固件版本失败，请检查连接！";
        return outcome;
    }
    outcome.log << QString("Device found with PID: %1").arg(model.identifier());
    outcome.title = model.title() + firmware;
    outcome.detects = false;
    outcome.polls = true;
    const QString failedPoll = "Error reading device PID from driver, error count: 1";
    outcome.traffic << on(1, {"getFirmwareVersion"});
    if (fault == PresenceOpen) {
        outcome.traffic << "open !31" << on(1, {"close"});
        outcome.log << failedPoll;
        return outcome;
    }
    outcome.traffic << on(connection, {"open"}) << on(1, {"close"});
    if (fault == PresenceRead) {
        outcome.traffic << on(connection, {"getDevicePid !31"});
        outcome.log << failedPoll;
    } else {
        outcome.traffic << on(connection, {"getDevicePid"});
    }
    return outcome;
}

void tst_DetectionFaults::eachStepMayFail()
{
    QFETCH(PanelModel, model);
    QFETCH(int, fault);
    const FaultRow &row = faults[fault];
    if (qstrcmp(row.command, "open") == 0 && !simulator().canRefuseOpens())
        QSKIP("Opening a device cannot be refused here.");
    const PanelStart start = panelStarts(model.identifier()).constFirst();
    const Outcome outcome = expected(model, row.fault, start);

    plug(model.identifier());
    QVERIFY(simulator().fail(QString::fromLatin1(row.command), row.nth, ERROR_GEN_FAILURE));
    MainWindow window;
    window.settingsWindow = &settings();
    const WindowView view(window);
    view.detect();
    if (view.pollTimer()->isActive())
        view.poll();

    QCOMPARE(takeLog(), outcome.log);
    QCOMPARE(takeTraffic(), outcome.traffic);
    QCOMPARE(view.content(), outcome.content);
    QCOMPARE(window.windowTitle(), outcome.title);
    QCOMPARE(view.detectTimer()->isActive(), outcome.detects);
    QCOMPARE(view.pollTimer()->isActive(), outcome.polls);
    // Each fault has struck.
    QCOMPARE(simulator().state().faults, 0u);
    ++m_injected;
}

void tst_DetectionFaults::noFailingEngineOrPanelCommandStopsTheSearch_data()
{
    QTest::addColumn<PanelModel>("model");
    QTest::addColumn<QString>("command");
    for (const PanelModel &model : allPanelModels()) {
        for (const char *command :
             {"getBufferSize", "getUsbLatency", "stopAudio", "setBufferSize", "restartAudio",
              "getSampleRate", "setSampleRate", "setWdmChannelCount", "setOutVolume",
              "sendMixerBlock", "setMicVolume"})
            QTest::addRow("%s: %s", qPrintable(model.name), command) << model << command;
    }
}

void tst_DetectionFaults::noFailingEngineOrPanelCommandStopsTheSearch()
{
    QFETCH(PanelModel, model);
    QFETCH(QString, command);
    plug(model.identifier());
    QVERIFY(simulator().fail(command, 1, ERROR_GEN_FAILURE));
    MainWindow window;
    window.settingsWindow = &settings();
    const WindowView view(window);
    view.detect();

    const QStringList lines = takeLog();
    QVERIFY(!lines.isEmpty());
    QCOMPARE(lines.constLast(), QString("Device found with PID: %1").arg(model.identifier()));
    QCOMPARE(view.content(), QStringList{model.name});
    QCOMPARE(window.windowTitle(), model.title() + firmware);
    QVERIFY(!view.detectTimer()->isActive());
    QVERIFY(view.pollTimer()->isActive());
    QCOMPARE(simulator().state().faults, 0u);
    ++m_injected;
}

void tst_DetectionFaults::cleanupTestCase()
{
    qInfo("%d faults injected", m_injected);
}

QTEST_MAIN(tst_DetectionFaults)
#include "tst_detectionfaults.moc"
