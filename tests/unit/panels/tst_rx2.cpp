#include "panelfixture.h"

#include <cmath>

namespace {

const QString sameBlock = "sendMixerBlock";
const QString savedLine = "控件状态已保存到配置文件";

/// The first block of a panel against the silent one of a device that was just plugged in;
/// @p monitor1 has MIC1 on all outputs.
QString firstBlock(bool monitor1 = false)
{
    QString text =
        "sendMixerBlock (4,0)=1 (5,1)=1 (6,2)=1 (7,3)=1 (8,4)=1 (9,5)=1 (10,6)=1 (11,7)=1";
    if (monitor1)
        text += " (64,0)=1 (65,0)=1 (68,0)=1 (69,0)=1";
    text += " (96,0)=1 (97,1)=1 (100,0)=1 (101,1)=1 (128,0)=1 (129,1)=1 (130,0)=1 (131,1)=1"
            " (132,0)=1 (133,1)=1 (160,0)=1 (161,1)=1 (162,2)=1 (163,3)=1 (164,4)=1 (165,5)=1"
            " (166,6)=1 (167,7)=1";
    for (int output = 0; output < 96; ++output)
        text += QString(" gain[%1]=1").arg(output);
    return text;
}

QStringList withSave(QStringList lines)
{
    return lines << savedLine;
}

} // namespace

/// The RX2 panel: what reaches the device, the log and the settings file.
class Rx2Test : public PanelFixture
{
    Q_OBJECT

public:
    Rx2Test()
        : PanelFixture(PanelModel::Rx2)
    { }

private slots:
    void theFirstStartSendsTheDefaultsInOrder();
    void theFirstStartSendsThesePackets();
    void theFirstStartLeavesThisBlockOnTheDevice();
    void theFirstStartLogsEachStepAndSave();
    void theFirstStartSavesAllSixteenKeys();
    void aSavedStateIsReplayed();
    void savedKnobsAreClamped_data();
    void savedKnobsAreClamped();

    void eachControlSendsLogsAndSaves_data();
    void eachControlSendsLogsAndSaves();
    void thePadOfMic2LogsChannel1();
    void theSpeakerPhoneFailsInTheHeadphonesWords();
    void mutingOneOutputLeavesTheOtherAlone_data();
    void mutingOneOutputLeavesTheOtherAlone();
    void theVolumeFollowsMuteAndDim_data();
    void theVolumeFollowsMuteAndDim();
    void switchingDirectOnAndOffLeavesTheBlockAsBuilt_data();
    void switchingDirectOnAndOffLeavesTheBlockAsBuilt();
};

void Rx2Test::theFirstStartSendsTheDefaultsInOrder()
{
    build();
    QCOMPARE(takeEvents(),
             QStringList({"open",
                          "setOutVolume 1 100",
                          "setOutVolume 2 100",
                          "setOutVolume 5 100",
                          "setOutVolume 6 100",
                          "setMic20dB 1 0",
                          "setMic48V 1 0",
                          firstBlock(),
                          "setMicVolume 1 0",
                          "setMicVolume 2 0",
                          "setMic20dB 2 0",
                          "setMic48V 2 0",
                          sameBlock,
                          "sendMixerBlock gain[0]=0 gain[1]=0",
                          sameBlock,
                          sameBlock,
                          "sendMixerBlock gain[4]=0 gain[5]=0",
                          sameBlock,
                          sameBlock,
                          "sendMixerBlock (68,2)=1 (69,3)=1",
                          "sendMixerBlock (64,2)=1 (65,3)=1"}));
}

void Rx2Test::theFirstStartSendsThesePackets()
{
    build();
    QCOMPARE(takePackets(),
             QList<QByteArray>({packet("01030002016400"), packet("01030002026400"),
                                packet("01030002056400"), packet("01030002066400"),
                                packet("015a0000010000"), packet("015b0000010000"),
                                packet("01070002010000"), packet("01070002020000"),
                                packet("015a0000020000"), packet("015b0000020000")}));
}

void Rx2Test::theFirstStartLeavesThisBlockOnTheDevice()
{
    build();
    QList<double> expected = initialBlock(PanelModel::Rx2);
    for (const int silent : {8192, 8193, 8196, 8197})
        expected[silent] = 0.0;
    for (const int unity : {2050, 2083, 2178, 2211})
        expected[unity] = 1.0;
    QCOMPARE(simulator().mixerBlock(), expected);
}

void Rx2Test::theFirstStartLogsEachStepAndSave()
{
    const QStringList pad{"Mic 20dB Button Clicked false", "Mic 20dB switched for channel 1."};
    const QStringList phantom{"Mic 48V Button Clicked false", "Mic 48V switched for channel 1."};
    const QStringList direct{"Monitor Mic set to: 0"};
    const QStringList gain{"Mic volume set to: 0"};
    const QStringList speaker{"Speaker Knob value changed: -80", "Speaker volume set to: -80"};
    const QStringList headphone{"Headphone Knob value changed: -80",
                                "Headphone volume set to: -80"};
    const QStringList mute{"Speaker Mute Button Clicked: Mute OFF"};

    QStringList expected;
    for (const QStringList &step : {pad, phantom, direct, gain, gain, pad, phantom, direct})
        expected += withSave(step);
    expected += withSave(speaker);
    // Mute and dim save the volume that they set and then themselves.
    expected += withSave(withSave(speaker) + mute);
    expected += withSave(withSave(speaker));
    expected += withSave(headphone);
    expected += withSave(withSave(headphone));
    expected += withSave(withSave(headphone));
    expected += withSave({"OTG to HP volume set to: 1"});
    expected += withSave({"OTG to SP volume set to: 1"});
    expected << "已从配置文件加载控件状态";
    build();
    QCOMPARE(takeLog(), expected);
}

void Rx2Test::theFirstStartSavesAllSixteenKeys()
{
    build();
    QCOMPARE(
        savedLines(),
        asStored({"[Button]", "Mic120dBIsChecked=false", "Mic148VIsChecked=false",
                  "MonitorMic1IsChecked=false", "Mic220dBIsChecked=false", "Mic248VIsChecked=false",
                  "MonitorMic2IsChecked=false", "SpeakerMuteIsChecked=false",
                  "SpeakerDimIsChecked=false", "HeadphoneMuteIsChecked=false",
                  "HeadphoneDimIsChecked=false", "[Dial]", "Mic1Value=0", "Mic2Value=0",
                  "SpeakerValue=-80", "HeadphoneValue=-80", "OtgToHpValue=0", "OtgToSPValue=0"}));
}

void Rx2Test::aSavedStateIsReplayed()
{
    const QByteArray state = "[Button]\n"
                             "HeadphoneDimIsChecked=true\n"
                             "HeadphoneMuteIsChecked=false\n"
                             "Mic120dBIsChecked=true\n"
                             "Mic148VIsChecked=false\n"
                             "Mic220dBIsChecked=false\n"
                             "Mic248VIsChecked=true\n"
                             "MonitorMic1IsChecked=true\n"
                             "MonitorMic2IsChecked=true\n"
                             "SpeakerDimIsChecked=false\n"
                             "SpeakerMuteIsChecked=true\n"
                             "[Dial]\n"
                             "HeadphoneValue=0\n"
                             "Mic1Value=10\n"
                             "Mic2Value=56\n"
                             "OtgToHpValue=-80\n"
                             "OtgToSPValue=-40\n"
                             "SpeakerValue=-20\n";
    writeSettings(state);
    build();
    QCOMPARE(takeSent(),
             QStringList({"setOutVolume 1 100",
                          "setOutVolume 2 100",
                          "setOutVolume 5 100",
                          "setOutVolume 6 100",
                          "setMic20dB 1 1",
                          "setMic48V 1 0",
                          firstBlock(true),
                          "setMicVolume 1 20",
                          "setMicVolume 2 112",
                          "setMic20dB 2 0",
                          "setMic48V 2 1",
                          "sendMixerBlock (64,1)=1 (65,1)=1 (68,1)=1 (69,1)=1",
                          "sendMixerBlock gain[0]=0.1 gain[1]=0.1",
                          "sendMixerBlock gain[0]=0 gain[1]=0",
                          sameBlock,
                          sameBlock,
                          sameBlock,
                          "sendMixerBlock gain[4]=0.1 gain[5]=0.1",
                          sameBlock,
                          "sendMixerBlock (64,2)=0.01 (65,3)=0.01"}));
    QCOMPARE(savedLines().join('\n') + '\n', state);
}

void Rx2Test::savedKnobsAreClamped_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("stored");
    QTest::addColumn<int>("used");
    QTest::newRow("MIC1 too low") << "Mic1" << -5 << 0;
    QTest::newRow("MIC2 at the top is kept") << "Mic2" << 56 << 56;
    QTest::newRow("MIC2 above the top") << "Mic2" << 57 << 56;
    QTest::newRow("speaker too low") << "Speaker" << -100 << -80;
    QTest::newRow("headphone too high") << "Headphone" << 60 << 6;
    QTest::newRow("phone to headphone too high") << "OtgToHp" << 7 << 6;
    QTest::newRow("phone to speaker too low") << "OtgToSP" << -81 << -80;
}

void Rx2Test::savedKnobsAreClamped()
{
    QFETCH(QString, name);
    QFETCH(int, stored);
    QFETCH(int, used);
    writeSettings(QString("[Dial]\n%1Value=%2\n").arg(name).arg(stored).toLatin1());
    build();
    QCOMPARE(knob(name).value, used);
    QCOMPARE(saved().value("Dial/" + name + "Value"), QString::number(used));
    if (name.startsWith("Mic")) {
        const QString request = QString("setMicVolume %1 %2").arg(name.last(1)).arg(2 * used);
        QCOMPARE(takeSent().filter("setMicVolume " + name.last(1)), QStringList(request));
        return;
    }
    const QMap<QString, int> entries{
        {"Speaker", 8192}, {"Headphone", 8196}, {"OtgToHp", 2178}, {"OtgToSP", 2050}};
    QCOMPARE(simulator().mixerBlock().at(entries.value(name)), used == -80 ? 0.0 : gainOf(used));
}

void Rx2Test::eachControlSendsLogsAndSaves_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("db"); // of a knob
    QTest::addColumn<QStringList>("sent");
    QTest::addColumn<QStringList>("log");
    const auto row = [](const char *name, int db, const QStringList &sent, const QStringList &log) {
        QTest::newRow(name) << name << db << sent << log;
    };
    const QStringList pad{"Mic 20dB Button Clicked true", "Mic 20dB switched for channel 1."};
    const QStringList phantom{"Mic 48V Button Clicked true", "Mic 48V switched for channel 1."};
    const QStringList direct = twice(withSave({"Monitor Mic set to: 1"}));

    row("Mic1", 1, {"setMicVolume 1 2"}, withSave({"Mic volume set to: 1"}));
    row("Mic2", 56, {"setMicVolume 2 112"}, withSave({"Mic volume set to: 56"}));
    row("Mic120dB", 0, twice("setMic20dB 1 1"), twice(withSave(pad)));
    row("Mic220dB", 0, twice("setMic20dB 2 1"), twice(withSave(pad)));
    row("Mic148V", 0, twice("setMic48V 1 1"), twice(withSave(phantom)));
    row("Mic248V", 0, twice("setMic48V 2 1"), twice(withSave(phantom)));
    row("MonitorMic1", 0, {"sendMixerBlock (64,0)=1 (65,0)=1 (68,0)=1 (69,0)=1", sameBlock},
        direct);
    row("MonitorMic2", 0, {"sendMixerBlock (64,1)=1 (65,1)=1 (68,1)=1 (69,1)=1", sameBlock},
        direct);
    row("Speaker", 0, {"sendMixerBlock gain[0]=1 gain[1]=1"},
        withSave({"Speaker Knob value changed: 0", "Speaker volume set to: 0"}));
    row("SpeakerMute", 0, {"sendMixerBlock gain[0]=0 gain[1]=0", sameBlock},
        twice(withSave(withSave({"Speaker Knob value changed: -80", "Speaker volume set to: -80"})
                       << "Speaker Mute Button Clicked: Mute ON")));
    row("SpeakerDim", 0, {"sendMixerBlock gain[0]=0.01 gain[1]=0.01", sameBlock},
        twice(
            withSave(withSave({"Speaker Knob value changed: -20", "Speaker volume set to: -40"}))));
    row("Headphone", -80, {"sendMixerBlock gain[4]=0 gain[5]=0"},
        withSave({"Headphone Knob value changed: -80", "Headphone volume set to: -80"}));
    // Muting the headphone calls its volume with the knob's own value.
    row("HeadphoneMute", 0, {"sendMixerBlock gain[4]=0 gain[5]=0", sameBlock},
        twice(withSave(
            withSave({"Headphone Knob value changed: -20", "Headphone volume set to: -80"}))));
    row("HeadphoneDim", 0, {"sendMixerBlock gain[4]=0.01 gain[5]=0.01", sameBlock},
        twice(withSave(
            withSave({"Headphone Knob value changed: -20", "Headphone volume set to: -40"}))));
    row("OtgToSP", -20, {"sendMixerBlock (64,2)=0.1 (65,3)=0.1"},
        withSave({"OTG to SP volume set to: 0.1"}));
    row("OtgToHp", -20, {"sendMixerBlock (68,2)=0.1 (69,3)=0.1"},
        withSave({"OTG to HP volume set to: 0.1"}));
}

void Rx2Test::eachControlSendsLogsAndSaves()
{
    QFETCH(QString, name);
    QFETCH(int, db);
    writeSettings("[Dial]\nSpeakerValue=-20\nHeadphoneValue=-20\n");
    buildQuietly();
    const bool isKnob = panel().findChild<Knob *>(name);
    const QString key = QString(isKnob ? "Dial/%1Value" : "Button/%1IsChecked").arg(name);
    QMap<QString, QString> expected = saved();
    QVERIFY(expected.contains(key));

    if (isKnob)
        knob(name).setValue(db);
    else
        click(name);
    QTEST(takeSent(), "sent");
    QTEST(takeLog(), "log");
    expected[key] = isKnob ? QString::number(db) : "true";
    QCOMPARE(saved(), expected);
}

void Rx2Test::thePadOfMic2LogsChannel1()
{
    buildQuietly();
    button("Mic220dB").setSelected(true);
    QCOMPARE(takeSent(), QStringList("setMic20dB 2 1"));
    QCOMPARE(takeLog(),
             withSave({"Mic 20dB Button Clicked true", "Mic 20dB switched for channel 1."}));
}

void Rx2Test::theSpeakerPhoneFailsInTheHeadphonesWords()
{
    buildQuietly();
    for (const char *name : {"OtgToSP", "OtgToHp"}) {
        QVERIFY(simulator().fail("sendMixerBlock", 1, ERROR_GEN_FAILURE));
        knob(name).setValue(-20);
        QCOMPARE(takeLog(), withSave({"Failed to set OTG to HP volume."}));
    }
}

void Rx2Test::mutingOneOutputLeavesTheOtherAlone_data()
{
    QTest::addColumn<QString>("muted");
    QTest::addColumn<int>("entry");
    QTest::newRow("speaker") << "Speaker" << 8192;
    QTest::newRow("headphone") << "Headphone" << 8196;
}

void Rx2Test::mutingOneOutputLeavesTheOtherAlone()
{
    QFETCH(QString, muted);
    QFETCH(int, entry);
    build();
    knob("Speaker").setValue(-20);
    knob("Headphone").setValue(-40);
    for (const char *what : {"Mute", "Dim"}) {
        QList<double> expected = simulator().mixerBlock();
        click(muted + what);
        QVERIFY(simulator().mixerBlock() != expected);
        expected[entry] = expected[entry + 1] = simulator().mixerBlock().at(entry);
        QCOMPARE(simulator().mixerBlock(), expected);
        click(muted + what);
    }
    QCOMPARE(simulator().mixerBlock().mid(8192, 2), QList<double>(2, gainOf(-20)));
    QCOMPARE(simulator().mixerBlock().mid(8196, 2), QList<double>(2, gainOf(-40)));
}

void Rx2Test::theVolumeFollowsMuteAndDim_data()
{
    struct Level {
        int db;
        bool muted;
        bool dimmed;
        int effective;
        double gain;
    };
    const Level levels[] = {{-20, false, false, -20, 0.1},
                            {-80, false, false, -80, 0.0},
                            {6, false, true, -14, std::pow(10.0, -14.0 / 20)},
                            {-59, false, true, -79, std::pow(10.0, -79.0 / 20)},
                            {-60, false, true, -80, 0.0},
                            {-61, false, true, -81, 0.0},
                            {6, true, false, -80, 0.0},
                            {6, true, true, -80, 0.0}};
    QTest::addColumn<QString>("output");
    QTest::addColumn<int>("entry");
    QTest::addColumn<int>("db");
    QTest::addColumn<bool>("muted");
    QTest::addColumn<bool>("dimmed");
    QTest::addColumn<int>("effective");
    QTest::addColumn<double>("gain");
    for (const auto &[output, entry] : {std::pair("Speaker", 8192), std::pair("Headphone", 8196)}) {
        for (const Level &level : levels)
            QTest::addRow("%s at %d%s%s", output, level.db, level.muted ? " muted" : "",
                          level.dimmed ? " dimmed" : "")
                << output << entry << level.db << level.muted << level.dimmed << level.effective
                << level.gain;
    }
}

void Rx2Test::theVolumeFollowsMuteAndDim()
{
    QFETCH(QString, output);
    QFETCH(int, entry);
    QFETCH(int, db);
    QFETCH(bool, muted);
    QFETCH(bool, dimmed);
    QFETCH(int, effective);
    QFETCH(double, gain);
    build();
    button(output + "Mute").setSelected(muted);
    button(output + "Dim").setSelected(dimmed);
    takeLog();
    QList<double> expected = simulator().mixerBlock();
    expected[entry] = expected[entry + 1] = gain;
    knob(output).setValue(db);
    QCOMPARE(simulator().mixerBlock(), expected);
    QCOMPARE(takeLog(),
             withSave({QString("%1 Knob value changed: %2").arg(output).arg(db),
                       QString("%1 volume set to: %2").arg(output).arg(effective)}));
}

void Rx2Test::switchingDirectOnAndOffLeavesTheBlockAsBuilt_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QList<int>>("entries");
    QTest::newRow("MIC1") << "MonitorMic1" << QList<int>({2048, 2080, 2176, 2208});
    QTest::newRow("MIC2") << "MonitorMic2" << QList<int>({2049, 2081, 2177, 2209});
}

void Rx2Test::switchingDirectOnAndOffLeavesTheBlockAsBuilt()
{
    QFETCH(QString, name);
    QFETCH(QList<int>, entries);
    build();
    const QList<double> built = simulator().mixerBlock();
    QList<double> switchedOn = built;
    for (const int entry : entries)
        switchedOn[entry] = 1.0;
    click(name);
    QCOMPARE(simulator().mixerBlock(), switchedOn);
    click(name);
    QCOMPARE(simulator().mixerBlock(), built);
}

QTEST_MAIN(Rx2Test)
#include "tst_rx2.moc"
