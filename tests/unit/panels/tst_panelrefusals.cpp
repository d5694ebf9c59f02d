#include "panelfixture.h"
#include "refusingdriver.h"

#include <QFile>

/// What panels do when a command reports failure, also those that a driver cannot make fail.
class tst_PanelRefusals : public QObject, private Observed
{
    Q_OBJECT

public:
    tst_PanelRefusals()
        : Observed(Device::None)
    { }

private slots:
    void init();
    void cleanup();
    void aRefusedLastOutputVolumeLeavesThePanelEmpty_data() { addModelRows(); }
    void aRefusedLastOutputVolumeLeavesThePanelEmpty();
    void aRefusedEarlierOutputVolumeIsOverlooked_data() { addModelRows(); }
    void aRefusedEarlierOutputVolumeIsOverlooked();
    void aRefusedCommandIsLoggedAndSavedAnyway_data();
    void aRefusedCommandIsLoggedAndSavedAnyway();
    void aRefusedInstrumentSwitchKeepsTheTextAndSavesTheState();

private:
    void build(const PanelModel &model) { m_panel = createPanel(model); }

    std::unique_ptr<QWidget> m_panel;
};

void tst_PanelRefusals::init()
{
    observe();
    refusingdriver::reset();
}

void tst_PanelRefusals::cleanup()
{
    m_panel.reset();
    QCOMPARE(refusingdriver::takeCommands().filter("close").size(), 1);
    stopObserving();
}

void tst_PanelRefusals::aRefusedLastOutputVolumeLeavesThePanelEmpty()
{
    QFETCH(PanelModel, model);
    QStringList commands{"open"};
    for (const int channel : model.outputChannels)
        commands << QString("setOutVolume %1 100").arg(channel);
    refusingdriver::refuse("setOutVolume", int(model.outputChannels.size()));
    build(model);
    QCOMPARE(refusingdriver::takeCommands(), commands);
    QCOMPARE(takeLog(), QStringList("Failed to set output volume."));
    QVERIFY(m_panel->children().isEmpty());
    QVERIFY(!m_panel->layout());
    QVERIFY(!QFile::exists(iniFile(model.file()).name()));
}

void tst_PanelRefusals::aRefusedEarlierOutputVolumeIsOverlooked()
{
    QFETCH(PanelModel, model);
    refusingdriver::refuse("setOutVolume");
    build(model);
    QVERIFY(m_panel->layout());
    const QStringList log = takeLog();
    QVERIFY(!log.contains("Failed to set output volume."));
    QCOMPARE(log.last(), "已从配置文件加载控件状态");
}

void tst_PanelRefusals::aRefusedCommandIsLoggedAndSavedAnyway_data()
{
    QTest::addColumn<PanelModel>("model");
    QTest::addColumn<QString>("name");
    for (const PanelModel &model : allPanelModels()) {
        for (const PanelControl &control : model.controls)
            QTest::addRow("%s %s", qPrintable(model.name), qPrintable(control.name))
                << model << control.name;
    }
}

void tst_PanelRefusals::aRefusedCommandIsLoggedAndSavedAnyway()
{
    QFETCH(PanelModel, model);
    QFETCH(QString, name);
    const PanelControl &control = model.control(name);
    ExpectedPanel expected(model);
    expected.construct();
    build(model);
    // Refused at once, and refused where it would take back what was done.
    for (const int value : {control.isKnob() ? 5 : 1, 0}) {
        refusingdriver::takeCommands();
        takeLog();
        expected.takeRequests();
        expected.takeLog();
        refusingdriver::refuse(control.command);
        setControl(*m_panel, control, value);
        expected.refuse(control, value);
        // This driver does not look into the blocks.
        const QString request = expected.takeRequests().join('\n');
        QCOMPARE(refusingdriver::takeCommands().join('\n'),
                 control.channel != 0 ? request : control.command);
        QCOMPARE(takeLog(), expected.takeLog());
        QCOMPARE(iniFile(model.file()).values(), expected.saved());
        if (const auto *instrument = m_panel->findChild<Button *>("MicInstr"))
            QCOMPARE(instrument->text(), expected.instrumentText());
        setControl(*m_panel, control, value);
        expected.act(control, value);
    }
}

void tst_PanelRefusals::aRefusedInstrumentSwitchKeepsTheTextAndSavesTheState()
{
    build(panelModel("rx1"));
    auto *instrument = m_panel->findChild<Button *>("MicInstr");
    refusingdriver::refuseAll("switchMicInstruction");
    QTest::mouseClick(instrument, Qt::LeftButton);
    QCOMPARE(instrument->text(), "MIC");
    QVERIFY(instrument->isSelected);
    QCOMPARE(iniFile("rx1.ini").values().value("Button/MicInstrIsChecked"), "true");
}

QTEST_MAIN(tst_PanelRefusals)
#include "tst_panelrefusals.moc"
