#include "button.h"
#include "knob.h"
#include "observed.h"
#include "panelmodel.h"
#include "refusingdriver.h"

#include <QFile>
#include <QTest>

namespace {

const QString savedLine = "控件状态已保存到配置文件";

QString keyOf(const QString &control, bool isKnob)
{
    return QString(isKnob ? "%1Value=" : "%1IsChecked=").arg(control);
}

} // namespace

/// What panels do when a command reports failure, also those that a driver cannot make fail.
class PanelRefusalsTest : public QObject, private Observed
{
    Q_OBJECT

public:
    PanelRefusalsTest()
        : Observed(Device::None)
    { }

private slots:
    void init();
    void cleanup();
    void aRefusedLastOutputVolumeLeavesThePanelEmpty_data();
    void aRefusedLastOutputVolumeLeavesThePanelEmpty();
    void aRefusedEarlierOutputVolumeIsOverlooked_data();
    void aRefusedEarlierOutputVolumeIsOverlooked();
    void aRefusedCommandIsLoggedAndSavedAnyway_data();
    void aRefusedCommandIsLoggedAndSavedAnyway();
    void aRefusedInstrumentSwitchKeepsTheTextAndSavesTheState();
    void aRefusedInstrumentSwitchBackKeepsTheTextToo();

private:
    void build(PanelModel model);
    static IniFile settings(PanelModel model) { return iniFile(nameOf(model) + ".ini"); }

    std::unique_ptr<QWidget> m_panel;
};

void PanelRefusalsTest::init()
{
    observe();
    refusingdriver::reset();
}

void PanelRefusalsTest::cleanup()
{
    m_panel.reset();
    QCOMPARE(refusingdriver::takeCommands().filter("close").size(), 1);
    stopObserving();
}

void PanelRefusalsTest::build(PanelModel model)
{
    m_panel = createPanel(model);
}

void PanelRefusalsTest::aRefusedLastOutputVolumeLeavesThePanelEmpty_data()
{
    QTest::addColumn<PanelModel>("model");
    QTest::addColumn<QStringList>("commands");
    const QStringList two{"open", "setOutVolume 1 100", "setOutVolume 2 100"};
    QTest::newRow("rx1") << PanelModel::Rx1 << two;
    QTest::newRow("rx2") << PanelModel::Rx2
                         << two + QStringList({"setOutVolume 5 100", "setOutVolume 6 100"});
    QTest::newRow("rm") << PanelModel::Rm << two;
}

void PanelRefusalsTest::aRefusedLastOutputVolumeLeavesThePanelEmpty()
{
    QFETCH(PanelModel, model);
    QFETCH(QStringList, commands);
    refusingdriver::refuse("setOutVolume", int(commands.size()) - 1);
    build(model);
    QCOMPARE(refusingdriver::takeCommands(), commands);
    QCOMPARE(takeLog(), QStringList("Failed to set output volume."));
    QVERIFY(m_panel->children().isEmpty());
    QVERIFY(!m_panel->layout());
    QVERIFY(!QFile::exists(settings(model).name()));
}

void PanelRefusalsTest::aRefusedEarlierOutputVolumeIsOverlooked_data()
{
    QTest::addColumn<PanelModel>("model");
    for (const PanelModel model : allPanelModels)
        QTest::newRow(qPrintable(nameOf(model))) << model;
}

void PanelRefusalsTest::aRefusedEarlierOutputVolumeIsOverlooked()
{
    QFETCH(PanelModel, model);
    refusingdriver::refuse("setOutVolume");
    build(model);
    QVERIFY(m_panel->layout());
    const QStringList log = takeLog();
    QVERIFY(!log.contains("Failed to set output volume."));
    QCOMPARE(log.last(), "已从配置文件加载控件状态");
}

void PanelRefusalsTest::aRefusedCommandIsLoggedAndSavedAnyway_data()
{
    QTest::addColumn<PanelModel>("model");
    QTest::addColumn<QString>("control");
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("request");
    QTest::addColumn<QStringList>("log");
    const auto row = [](PanelModel model, const char *control, const char *command,
                        const QString &request, const QStringList &log) {
        const QStringList saves(model == PanelModel::Rx2 ? 1 : 0, savedLine);
        QTest::addRow("%s %s", qPrintable(nameOf(model)), control)
            << model << control << command << request << log + saves;
    };
    const QStringList gain{"Failed to set mic volume."};
    const QStringList pad{"Mic 20dB Button Clicked true", "Failed to switch mic 20dB."};
    const QStringList phantom{"Mic 48V Button Clicked true", "Failed to switch mic 48V."};
    const QStringList monitor{"Failed to set Monitor Mic."};
    const QStringList phone{"Failed to set OTG to HP volume."};
    const QString block = "sendMixerBlock";

    row(PanelModel::Rx1, "Mic", "setMicVolume", "setMicVolume 1 10", gain);
    row(PanelModel::Rx1, "MicInstr", "switchMicInstruction", "switchMicInstruction 1 1",
        {"Mic Instr Button Clicked true", "Failed to switch mic instruction."});
    row(PanelModel::Rx1, "Mic20dB", "setMic20dB", "setMic20dB 1 1", pad);
    row(PanelModel::Rx1, "Mic48V", "setMic48V", "setMic48V 1 1", phantom);
    row(PanelModel::Rx1, "MonitorMic", "sendMixerBlock", block, monitor);
    row(PanelModel::Rx1, "Headphone", "sendMixerBlock", block, {"Failed to set headphone volume."});
    row(PanelModel::Rx1, "HeadphoneMute", "sendMixerBlock", block,
        {"Failed to set headphone volume.", "Headphone Mute Button Clicked: Mute ON"});
    row(PanelModel::Rx1, "HeadphoneDim", "sendMixerBlock", block,
        {"Failed to set headphone volume.", "Headphone Dim Button Clicked: Dim ON"});
    row(PanelModel::Rx1, "OtgToHp", "sendMixerBlock", block, phone);

    row(PanelModel::Rx2, "Mic1", "setMicVolume", "setMicVolume 1 10", gain);
    row(PanelModel::Rx2, "Mic2", "setMicVolume", "setMicVolume 2 10", gain);
    row(PanelModel::Rx2, "Mic120dB", "setMic20dB", "setMic20dB 1 1", pad);
    row(PanelModel::Rx2, "Mic220dB", "setMic20dB", "setMic20dB 2 1", pad);
    row(PanelModel::Rx2, "Mic148V", "setMic48V", "setMic48V 1 1", phantom);
    row(PanelModel::Rx2, "Mic248V", "setMic48V", "setMic48V 2 1", phantom);
    row(PanelModel::Rx2, "MonitorMic1", "sendMixerBlock", block, monitor);
    row(PanelModel::Rx2, "MonitorMic2", "sendMixerBlock", block, monitor);
    row(PanelModel::Rx2, "Speaker", "sendMixerBlock", block,
        {"Speaker Knob value changed: 5", "Failed to set speaker volume."});
    row(PanelModel::Rx2, "SpeakerMute", "sendMixerBlock", block,
        {"Speaker Knob value changed: -80", "Failed to set speaker volume.", savedLine,
         "Speaker Mute Button Clicked: Mute ON"});
    row(PanelModel::Rx2, "SpeakerDim", "sendMixerBlock", block,
        {"Speaker Knob value changed: -80", "Failed to set speaker volume.", savedLine});
    row(PanelModel::Rx2, "Headphone", "sendMixerBlock", block,
        {"Headphone Knob value changed: 5", "Failed to set headphone volume."});
    row(PanelModel::Rx2, "HeadphoneMute", "sendMixerBlock", block,
        {"Headphone Knob value changed: -80", "Failed to set headphone volume.", savedLine});
    row(PanelModel::Rx2, "HeadphoneDim", "sendMixerBlock", block,
        {"Headphone Knob value changed: -80", "Failed to set headphone volume.", savedLine});
    row(PanelModel::Rx2, "OtgToHp", "sendMixerBlock", block, phone);
    row(PanelModel::Rx2, "OtgToSP", "sendMixerBlock", block, phone);

    row(PanelModel::Rm, "Mic", "setMicVolume", "setMicVolume 1 10", gain);
    row(PanelModel::Rm, "MonitorMic", "sendMixerBlock", block, monitor);
    row(PanelModel::Rm, "Headphone", "sendMixerBlock", block, {"Failed to set headphone volume."});
    row(PanelModel::Rm, "HeadphoneMute", "sendMixerBlock", block,
        {"Failed to set headphone volume.", "Headphone Mute Button Clicked: Mute ON"});
    row(PanelModel::Rm, "HeadphoneDim", "sendMixerBlock", block,
        {"Failed to set headphone volume.", "Headphone Dim Button Clicked: Dim ON"});
}

void PanelRefusalsTest::aRefusedCommandIsLoggedAndSavedAnyway()
{
    QFETCH(PanelModel, model);
    QFETCH(QString, control);
    QFETCH(QString, command);
    build(model);
    refusingdriver::takeCommands();
    takeLog();
    refusingdriver::refuse(command);
    auto *knob = m_panel->findChild<Knob *>(control);
    auto *button = m_panel->findChild<Button *>(control);
    QVERIFY(knob || button);
    if (knob)
        knob->setValue(5);
    else
        button->setSelected(true);
    QTEST(refusingdriver::takeCommands().join('\n'), "request");
    QTEST(takeLog(), "log");
    const QString line = keyOf(control, knob) + (knob ? "5" : "true");
    QCOMPARE(settings(model).lines().filter(keyOf(control, knob)), QStringList(line));
}

void PanelRefusalsTest::aRefusedInstrumentSwitchKeepsTheTextAndSavesTheState()
{
    build(PanelModel::Rx1);
    auto *instrument = m_panel->findChild<Button *>("MicInstr");
    QVERIFY(instrument);
    refusingdriver::refuseAll("switchMicInstruction");
    QTest::mouseClick(instrument, Qt::LeftButton);
    QCOMPARE(instrument->text(), "MIC");
    QVERIFY(instrument->isSelected);
    QVERIFY(settings(PanelModel::Rx1).lines().contains("MicInstrIsChecked=true"));
}

void PanelRefusalsTest::aRefusedInstrumentSwitchBackKeepsTheTextToo()
{
    build(PanelModel::Rx1);
    auto *instrument = m_panel->findChild<Button *>("MicInstr");
    QVERIFY(instrument);
    instrument->setSelected(true);
    QCOMPARE(instrument->text(), "INST");
    refusingdriver::refuse("switchMicInstruction");
    instrument->setSelected(false);
    QCOMPARE(instrument->text(), "INST");
    QVERIFY(settings(PanelModel::Rx1).lines().contains("MicInstrIsChecked=false"));
}

QTEST_MAIN(PanelRefusalsTest)
#include "tst_panelrefusals.moc"
