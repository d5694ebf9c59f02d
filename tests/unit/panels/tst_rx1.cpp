#include "panelfixture.h"

#include <QLocale>

#include <cmath>

namespace {

const QString sameBlock = "sendMixerBlock";
const QString fullPath = "sendMixerBlock (64,2)=1 (65,3)=1";

/// The first block of a panel against the silent one of a device that was just plugged in.
QString firstBlock(const QString &monitor = QString())
{
    QString text =
        "sendMixerBlock (4,0)=1 (5,1)=1 (6,2)=1 (7,3)=1 (8,4)=1 (9,5)=1 (10,6)=1 (11,7)=1";
    text += monitor;
    text += " (96,0)=1 (97,1)=1 (128,0)=1 (129,1)=1 (130,0)=1 (131,1)=1 (160,0)=1 (161,1)=1"
            " (162,2)=1 (163,3)=1 (164,4)=1 (165,5)=1 (166,6)=1 (167,7)=1";
    for (int output = 0; output < 96; ++output)
        text += QString(" gain[%1]=1").arg(output);
    return text;
}

QString headphoneBlock(double gain)
{
    const QString value = QString::number(gain, 'g', 12);
    return QString("sendMixerBlock gain[0]=%1 gain[1]=%1").arg(value);
}

} // namespace

/// The RX1 panel: what reaches the device, the log and the settings file.
class Rx1Test : public PanelFixture
{
    Q_OBJECT

public:
    Rx1Test()
        : PanelFixture(PanelModel::Rx1)
    { }

private slots:
    void theFirstStartSendsTheDefaultsInOrder();
    void theFirstStartSendsThesePackets();
    void theFirstStartLeavesThisBlockOnTheDevice();
    void theFirstStartLogsEachStep();
    void theFirstStartSavesAllNineKeys();
    void aSavedStateIsReplayed();
    void theReplayOfASavedStateIsLogged();
    void aSavedStateShowsInTheControls();
    void aSavedGainAboveTheMaximumIsSentAndSavedClamped();
    void savedKnobsAreClamped_data();
    void savedKnobsAreClamped();
    void theFirstOutputVolumeMayFail();

    void eachControlSendsLogsAndSaves_data();
    void eachControlSendsLogsAndSaves();
    void eachControlSavesAtOnce_data() { eachControlSendsLogsAndSaves_data(); }
    void eachControlSavesAtOnce();
    void aSecondClickSwitchesOffAgain();
    void theWheelSendsOneStepANotch();
    void theWheelAtTheMaximumStaysAndStillSends();
    void theInstrumentButtonNamesTheInput();
    void switchingDirectOnAndOffLeavesTheBlockAsBuilt();

    void theVolumeFollowsMuteAndDim_data();
    void theVolumeFollowsMuteAndDim();
    void unmutingWhileDimmedRestoresTheDimmedLevel();
    void muteNeverSavesSilence();
    void aKnobTurnedWhileMutedIsSavedAndStaysSilent();
};

void Rx1Test::theFirstStartSendsTheDefaultsInOrder()
{
    build();
    QCOMPARE(
        takeEvents(),
        QStringList({"open", "setOutVolume 1 100", "setOutVolume 2 100", "switchMicInstruction 1 0",
                     "setMic20dB 1 0", "setMic48V 1 0", firstBlock(), "setMicVolume 1 0",
                     headphoneBlock(0.0), sameBlock, sameBlock, fullPath}));
}

void Rx1Test::theFirstStartSendsThesePackets()
{
    build();
    QCOMPARE(takePackets(),
             QList<QByteArray>({packet("01030002016400"), packet("01030002026400"),
                                packet("01640000010000"), packet("015a0000010000"),
                                packet("015b0000010000"), packet("01070002010000")}));
}

void Rx1Test::theFirstStartLeavesThisBlockOnTheDevice()
{
    build();
    QList<double> expected = initialBlock(PanelModel::Rx1);
    expected[8192] = expected[8193] = 0.0;
    expected[2050] = expected[2083] = 1.0;
    QCOMPARE(simulator().mixerBlock(), expected);
}

void Rx1Test::theFirstStartLogsEachStep()
{
    build();
    QCOMPARE(
        takeLog(),
        QStringList({"Mic Instr Button Clicked false", "Mic instruction switched for channel 1.",
                     "Mic 20dB Button Clicked false", "Mic 20dB switched for channel 1.",
                     "Mic 48V Button Clicked false", "Mic 48V switched for channel 1.",
                     "Monitor Mic set to: 0", "Mic volume set to: 0", "Headphone volume set to: 0",
                     "Headphone volume set to: 0", "Headphone Mute Button Clicked: Mute OFF",
                     "Headphone volume set to: 0", "Headphone Dim Button Clicked: Dim OFF",
                     "OTG to HP volume set to: 1", "已从配置文件加载控件状态"}));
}

void Rx1Test::theFirstStartSavesAllNineKeys()
{
    build();
    QCOMPARE(savedLines(),
             asStored({"[Button]", "MicInstrIsChecked=false", "Mic20dBIsChecked=false",
                       "Mic48VIsChecked=false", "MonitorMicIsChecked=false",
                       "HeadphoneMuteIsChecked=false", "HeadphoneDimIsChecked=false", "[Dial]",
                       "MicValue=0", "HeadphoneValue=-80", "OtgToHpValue=0"}));
}

namespace {

const QByteArray savedState = "[Button]\n"
                              "HeadphoneDimIsChecked=true\n"
                              "HeadphoneMuteIsChecked=true\n"
                              "Mic20dBIsChecked=true\n"
                              "Mic48VIsChecked=true\n"
                              "MicInstrIsChecked=true\n"
                              "MonitorMicIsChecked=true\n"
                              "[Dial]\n"
                              "HeadphoneValue=-20\n"
                              "MicValue=20\n"
                              "OtgToHpValue=-40\n";

} // namespace

void Rx1Test::aSavedStateIsReplayed()
{
    writeSettings(savedState);
    build();
    QCOMPARE(takeSent(),
             QStringList({"setOutVolume 1 100", "setOutVolume 2 100", "switchMicInstruction 1 1",
                          "setMic20dB 1 1", "setMic48V 1 1", firstBlock(" (64,0)=1 (65,1)=1"),
                          "setMicVolume 1 40", headphoneBlock(0.1), headphoneBlock(0.0), sameBlock,
                          "sendMixerBlock (64,2)=0.01 (65,3)=0.01"}));
    QCOMPARE(savedLines().join('\n') + '\n', savedState);
}

void Rx1Test::theReplayOfASavedStateIsLogged()
{
    writeSettings(savedState);
    build();
    QCOMPARE(takeLog(),
             QStringList({"Mic Instr Button Clicked true",
                          "Mic instruction switched for channel 1.", "Mic 20dB Button Clicked true",
                          "Mic 20dB switched for channel 1.", "Mic 48V Button Clicked true",
                          "Mic 48V switched for channel 1.", "Monitor Mic set to: 1",
                          "Mic volume set to: 20", "Headphone volume set to: 0.1",
                          "Headphone volume set to: 0", "Headphone Mute Button Clicked: Mute ON",
                          "Headphone volume set to: 0", "Headphone Dim Button Clicked: Dim ON",
                          "OTG to HP volume set to: 0.01", "已从配置文件加载控件状态"}));
}

void Rx1Test::aSavedStateShowsInTheControls()
{
    writeSettings(savedState);
    build();
    for (const char *name :
         {"MicInstr", "Mic20dB", "Mic48V", "MonitorMic", "HeadphoneMute", "HeadphoneDim"})
        QVERIFY2(button(name).isSelected, name);
    QCOMPARE(button("MicInstr").text(), "INST");
    QCOMPARE(knob("Mic").value, 20);
    QCOMPARE(knob("Headphone").value, -20);
    QCOMPARE(knob("OtgToHp").value, -40);
}

void Rx1Test::aSavedGainAboveTheMaximumIsSentAndSavedClamped()
{
    writeSettings("[Dial]\nMicValue=50\n");
    build();
    QCOMPARE(takeSent().filter("setMicVolume"), QStringList("setMicVolume 1 84"));
    QCOMPARE(saved().value("Dial/MicValue"), "42");
}

void Rx1Test::savedKnobsAreClamped_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("stored");
    QTest::addColumn<int>("used");
    QTest::newRow("gain too low") << "Mic" << -1 << 0;
    QTest::newRow("gain at the top") << "Mic" << 42 << 42;
    QTest::newRow("gain far too high") << "Mic" << 2147483647 << 42;
    QTest::newRow("headphone too low") << "Headphone" << -81 << -80;
    QTest::newRow("headphone too high") << "Headphone" << 7 << 6;
    QTest::newRow("headphone far too low") << "Headphone" << -2147483647 - 1 << -80;
    QTest::newRow("phone too low") << "OtgToHp" << -200 << -80;
    QTest::newRow("phone too high") << "OtgToHp" << 100 << 6;
}

void Rx1Test::savedKnobsAreClamped()
{
    QFETCH(QString, name);
    QFETCH(int, stored);
    QFETCH(int, used);
    writeSettings(QString("[Dial]\n%1Value=%2\n").arg(name).arg(stored).toLatin1());
    build();
    QCOMPARE(knob(name).value, used);
    QCOMPARE(saved().value("Dial/" + name + "Value"), QString::number(used));
    const QList<double> block = simulator().mixerBlock();
    const double gain = used == -80 ? 0.0 : gainOf(used);
    if (name == "Headphone")
        QCOMPARE(block.mid(8192, 2), QList<double>(2, gain));
    else if (name == "OtgToHp")
        QCOMPARE(QList<double>({block.at(2050), block.at(2083)}), QList<double>(2, gain));
    else
        QVERIFY(takeSent().contains(QString("setMicVolume 1 %1").arg(2 * used)));
}

void Rx1Test::theFirstOutputVolumeMayFail()
{
    QVERIFY(simulator().fail("setOutVolume", 1, ERROR_GEN_FAILURE));
    build();
    QCOMPARE(
        takeSent().mid(0, 3),
        QStringList({"setOutVolume 1 100 !31", "setOutVolume 2 100", "switchMicInstruction 1 0"}));
    QCOMPARE(panel().findChildren<Knob *>().size(), 3);
    QCOMPARE(takeLog().last(), "已从配置文件加载控件状态");
}

void Rx1Test::eachControlSendsLogsAndSaves_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("db"); // of a knob
    QTest::addColumn<QStringList>("sent");
    QTest::addColumn<QStringList>("log");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("value");

    QTest::newRow("gain") << "Mic" << 7 << QStringList("setMicVolume 1 14")
                          << QStringList("Mic volume set to: 7") << "Dial/MicValue"
                          << "7";
    QTest::newRow("MIC/INST") << "MicInstr" << 0 << twice("switchMicInstruction 1 1")
                              << twice(QStringList({"Mic Instr Button Clicked true",
                                                    "Mic instruction switched for channel 1."}))
                              << "Button/MicInstrIsChecked"
                              << "true";
    QTest::newRow("20dB") << "Mic20dB" << 0 << twice("setMic20dB 1 1")
                          << twice(QStringList({"Mic 20dB Button Clicked true",
                                                "Mic 20dB switched for channel 1."}))
                          << "Button/Mic20dBIsChecked"
                          << "true";
    QTest::newRow("48V") << "Mic48V" << 0 << twice("setMic48V 1 1")
                         << twice(QStringList(
                                {"Mic 48V Button Clicked true", "Mic 48V switched for channel 1."}))
                         << "Button/Mic48VIsChecked"
                         << "true";
    QTest::newRow("DIRECT") << "MonitorMic" << 0
                            << QStringList({"sendMixerBlock (64,0)=1 (65,1)=1", sameBlock})
                            << twice("Monitor Mic set to: 1") << "Button/MonitorMicIsChecked"
                            << "true";
    QTest::newRow("headphone") << "Headphone" << 0 << QStringList(headphoneBlock(1.0))
                               << QStringList("Headphone volume set to: 1") << "Dial/HeadphoneValue"
                               << "0";
    QTest::newRow("MUTE") << "HeadphoneMute" << 0 << QStringList({headphoneBlock(0.0), sameBlock})
                          << twice(QStringList({"Headphone volume set to: 0",
                                                "Headphone Mute Button Clicked: Mute ON"}))
                          << "Button/HeadphoneMuteIsChecked"
                          << "true";
    QTest::newRow("DIM") << "HeadphoneDim" << 0 << QStringList({headphoneBlock(0.01), sameBlock})
                         << twice(QStringList({"Headphone volume set to: 0.01",
                                               "Headphone Dim Button Clicked: Dim ON"}))
                         << "Button/HeadphoneDimIsChecked"
                         << "true";
    QTest::newRow("phone") << "OtgToHp" << -20
                           << QStringList("sendMixerBlock (64,2)=0.1 (65,3)=0.1")
                           << QStringList("OTG to HP volume set to: 0.1") << "Dial/OtgToHpValue"
                           << "-20";
}

void Rx1Test::eachControlSendsLogsAndSaves()
{
    QFETCH(QString, name);
    QFETCH(int, db);
    QFETCH(QString, key);
    writeSettings("[Dial]\nHeadphoneValue=-20\n");
    buildQuietly();
    QMap<QString, QString> expected = saved();
    QVERIFY(expected.contains(key));

    if (key.startsWith("Dial"))
        knob(name).setValue(db);
    else
        click(name);
    QTEST(takeSent(), "sent");
    QTEST(takeLog(), "log");
    QFETCH(QString, value);
    expected[key] = value;
    QCOMPARE(saved(), expected);
}

void Rx1Test::eachControlSavesAtOnce()
{
    QFETCH(QString, name);
    QFETCH(int, db);
    QFETCH(QString, key);
    QFETCH(QString, value);
    buildQuietly();
    QStringList values;
    const auto look = [&] { values << saved().value(key); };
    if (key.startsWith("Dial")) {
        connect(&knob(name), &Knob::valueChangedSig, &panel(), look);
        knob(name).setValue(db);
    } else {
        connect(&button(name), qOverload<bool>(&Button::pressed), &panel(), look);
        button(name).setSelected(true);
    }
    QCOMPARE(values, QStringList(value));
}

void Rx1Test::aSecondClickSwitchesOffAgain()
{
    buildQuietly();
    click("Mic48V");
    QVERIFY(button("Mic48V").isSelected);
    takeSent();
    takeLog();
    click("Mic48V");
    QVERIFY(!button("Mic48V").isSelected);
    QCOMPARE(takeSent(), twice("setMic48V 1 0"));
    QCOMPARE(
        takeLog(),
        twice(QStringList({"Mic 48V Button Clicked false", "Mic 48V switched for channel 1."})));
    QCOMPARE(saved().value("Button/Mic48VIsChecked"), "false");
}

void Rx1Test::theWheelSendsOneStepANotch()
{
    buildQuietly();
    turn("Mic", 3);
    turn("Mic", -1);
    QCOMPARE(takeSent(),
             QStringList(
                 {"setMicVolume 1 2", "setMicVolume 1 4", "setMicVolume 1 6", "setMicVolume 1 4"}));
    QCOMPARE(saved().value("Dial/MicValue"), "2");
}

void Rx1Test::theWheelAtTheMaximumStaysAndStillSends()
{
    writeSettings("[Dial]\nMicValue=41\n");
    buildQuietly();
    turn("Mic", 3);
    QCOMPARE(takeSent(),
             QStringList({"setMicVolume 1 84", "setMicVolume 1 84", "setMicVolume 1 84"}));
    QCOMPARE(saved().value("Dial/MicValue"), "42");
}

void Rx1Test::theInstrumentButtonNamesTheInput()
{
    build();
    QCOMPARE(button("MicInstr").text(), "MIC");
    click("MicInstr");
    QCOMPARE(button("MicInstr").text(), "INST");
    click("MicInstr");
    QCOMPARE(button("MicInstr").text(), "MIC");
}

void Rx1Test::switchingDirectOnAndOffLeavesTheBlockAsBuilt()
{
    build();
    const QList<double> built = simulator().mixerBlock();
    click("MonitorMic");
    QList<double> switchedOn = built;
    switchedOn[2048] = switchedOn[2081] = 1.0;
    QCOMPARE(simulator().mixerBlock(), switchedOn);
    click("MonitorMic");
    QCOMPARE(simulator().mixerBlock(), built);
}

void Rx1Test::theVolumeFollowsMuteAndDim_data()
{
    QTest::addColumn<int>("db");
    QTest::addColumn<bool>("muted");
    QTest::addColumn<bool>("dimmed");
    QTest::addColumn<double>("gain");
    QTest::newRow("plain") << -20 << false << false << 0.1;
    QTest::newRow("unity") << 0 << false << false << 1.0;
    QTest::newRow("maximum") << 6 << false << false << std::pow(10.0, 6.0 / 20);
    QTest::newRow("just audible") << -79 << false << false << std::pow(10.0, -79.0 / 20);
    QTest::newRow("silent") << -80 << false << false << 0.0;
    QTest::newRow("dimmed") << 0 << false << true << 0.1;
    QTest::newRow("maximum dimmed") << 6 << false << true << std::pow(10.0, -14.0 / 20);
    QTest::newRow("just audible dimmed") << -59 << false << true << std::pow(10.0, -79.0 / 20);
    QTest::newRow("dimmed to the floor") << -60 << false << true << 0.0;
    QTest::newRow("dimmed below the floor") << -61 << false << true << 0.0;
    QTest::newRow("silent dimmed") << -80 << false << true << 0.0;
    QTest::newRow("muted") << 0 << true << false << 0.0;
    QTest::newRow("maximum muted") << 6 << true << false << 0.0;
    QTest::newRow("muted and dimmed") << 6 << true << true << 0.0;
}

void Rx1Test::theVolumeFollowsMuteAndDim()
{
    QFETCH(int, db);
    QFETCH(bool, muted);
    QFETCH(bool, dimmed);
    QFETCH(double, gain);
    const QString logLine =
        QString("Headphone volume set to: %1").arg(QString::number(gain, 'g', 6));
    buildQuietly();
    QList<double> expected = simulator().mixerBlock();
    expected[8192] = expected[8193] = gain;

    button("HeadphoneMute").setSelected(muted);
    button("HeadphoneDim").setSelected(dimmed);
    takeLog();
    knob("Headphone").setValue(db);
    QCOMPARE(simulator().mixerBlock(), expected);
    QCOMPARE(takeLog(), QStringList(logLine));

    // The order in which they come makes no difference.
    begin(PanelModel::Rx1);
    build();
    knob("Headphone").setValue(db);
    button("HeadphoneDim").setSelected(dimmed);
    button("HeadphoneMute").setSelected(muted);
    QCOMPARE(simulator().mixerBlock(), expected);
}

void Rx1Test::unmutingWhileDimmedRestoresTheDimmedLevel()
{
    build();
    knob("Headphone").setValue(-20);
    click("HeadphoneDim");
    click("HeadphoneMute");
    takeSent();
    takeLog();
    click("HeadphoneMute");
    QCOMPARE(takeSent(), QStringList({headphoneBlock(0.01), sameBlock}));
    QCOMPARE(takeLog(),
             twice(QStringList(
                 {"Headphone volume set to: 0.01", "Headphone Mute Button Clicked: Mute OFF"})));
}

void Rx1Test::muteNeverSavesSilence()
{
    build();
    knob("Headphone").setValue(-5);
    click("HeadphoneMute");
    QCOMPARE(saved().value("Dial/HeadphoneValue"), "-5");
    QCOMPARE(knob("Headphone").value, -5);
}

void Rx1Test::aKnobTurnedWhileMutedIsSavedAndStaysSilent()
{
    build();
    click("HeadphoneMute");
    takeSent();
    knob("Headphone").setValue(3);
    QCOMPARE(takeSent(), QStringList(sameBlock));
    QCOMPARE(saved().value("Dial/HeadphoneValue"), "3");
}

QTEST_MAIN(Rx1Test)
#include "tst_rx1.moc"
