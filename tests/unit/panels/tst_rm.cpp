#include "panelfixture.h"

#include <cmath>

namespace {

const QString sameBlock = "sendMixerBlock";

/// The first block of a panel against the silent one of a device that was just plugged in.
QString firstBlock(const QString &monitorLeft = QString(), const QString &monitorRight = QString())
{
    QString text =
        "sendMixerBlock (4,0)=1 (5,1)=1 (6,2)=1 (7,3)=1 (8,4)=1 (9,5)=1 (10,6)=1 (11,7)=1";
    text += monitorLeft + " (64,2)=1" + monitorRight + " (65,3)=1";
    text += " (96,0)=1 (97,1)=1 (128,0)=1 (129,1)=1 (130,0)=1 (131,1)=1 (160,0)=1 (161,1)=1"
            " (162,2)=1 (163,3)=1 (164,4)=1 (165,5)=1 (166,6)=1 (167,7)=1";
    for (int output = 0; output < 96; ++output)
        text += QString(" gain[%1]=1").arg(output);
    return text;
}

} // namespace

/// The RM panel: what reaches the device, the log and the settings file.
class RmTest : public PanelFixture
{
    Q_OBJECT

public:
    RmTest()
        : PanelFixture(PanelModel::Rm)
    { }

private slots:
    void theFirstStartSendsTheDefaultsInOrder();
    void theFirstStartSendsThesePackets();
    void theFirstStartLeavesThisBlockOnTheDevice();
    void theFirstStartLogsEachStepButTheVolume();
    void theFirstStartSavesAllFiveKeys();
    void aSavedStateIsReplayed();
    void savedKnobsAreClamped();

    void eachControlSendsLogsAndSaves_data();
    void eachControlSendsLogsAndSaves();
    void turningTheHeadphoneKnobLogsNothing();
    void aFailingHeadphoneVolumeIsLogged();
    void theVolumeFollowsMuteAndDim_data();
    void theVolumeFollowsMuteAndDim();
    void thePhoneStaysAtUnityWhateverIsDone();
    void switchingDirectOnAndOffLeavesTheBlockAsBuilt();
};

void RmTest::theFirstStartSendsTheDefaultsInOrder()
{
    build();
    QCOMPARE(takeEvents(),
             QStringList({"open", "setOutVolume 1 100", "setOutVolume 2 100", firstBlock(),
                          "setMicVolume 1 0", "sendMixerBlock gain[0]=0 gain[1]=0", sameBlock,
                          sameBlock}));
}

void RmTest::theFirstStartSendsThesePackets()
{
    build();
    QCOMPARE(takePackets(),
             QList<QByteArray>(
                 {packet("01030002016400"), packet("01030002026400"), packet("01070002010000")}));
}

void RmTest::theFirstStartLeavesThisBlockOnTheDevice()
{
    build();
    QList<double> expected = initialBlock(PanelModel::Rm);
    expected[8192] = expected[8193] = 0.0;
    QCOMPARE(simulator().mixerBlock(), expected);
}

void RmTest::theFirstStartLogsEachStepButTheVolume()
{
    build();
    QCOMPARE(takeLog(),
             QStringList({"Monitor Mic set to: 0", "Mic volume set to: 0",
                          "Headphone Mute Button Clicked: Mute OFF",
                          "Headphone Dim Button Clicked: Dim OFF", "已从配置文件加载控件状态"}));
}

void RmTest::theFirstStartSavesAllFiveKeys()
{
    build();
    QCOMPARE(
        savedLines(),
        asStored({"[Button]", "MonitorMicIsChecked=false", "HeadphoneMuteIsChecked=false",
                  "HeadphoneDimIsChecked=false", "[Dial]", "MicValue=0", "HeadphoneValue=-80"}));
}

void RmTest::aSavedStateIsReplayed()
{
    const QByteArray state = "[Button]\n"
                             "HeadphoneDimIsChecked=true\n"
                             "HeadphoneMuteIsChecked=true\n"
                             "MonitorMicIsChecked=true\n"
                             "[Dial]\n"
                             "HeadphoneValue=0\n"
                             "MicValue=42\n";
    writeSettings(state);
    build();
    QCOMPARE(takeSent(),
             QStringList({"setOutVolume 1 100", "setOutVolume 2 100",
                          firstBlock(" (64,0)=1", " (65,1)=1"), "setMicVolume 1 84", sameBlock,
                          "sendMixerBlock gain[0]=0 gain[1]=0", sameBlock}));
    QCOMPARE(takeLog(),
             QStringList({"Monitor Mic set to: 1", "Mic volume set to: 42",
                          "Headphone Mute Button Clicked: Mute ON",
                          "Headphone Dim Button Clicked: Dim ON", "已从配置文件加载控件状态"}));
    QCOMPARE(savedLines().join('\n') + '\n', state);
}

void RmTest::savedKnobsAreClamped()
{
    writeSettings("[Dial]\nMicValue=43\nHeadphoneValue=7\n");
    build();
    QCOMPARE(takeSent().filter("setMicVolume"), QStringList("setMicVolume 1 84"));
    QCOMPARE(simulator().mixerBlock().mid(8192, 2), QList<double>(2, gainOf(6)));
    QCOMPARE(saved().value("Dial/MicValue"), "42");
    QCOMPARE(saved().value("Dial/HeadphoneValue"), "6");
}

void RmTest::eachControlSendsLogsAndSaves_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("db"); // of a knob
    QTest::addColumn<QStringList>("sent");
    QTest::addColumn<QStringList>("log");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("value");

    QTest::newRow("gain") << "Mic" << 21 << QStringList("setMicVolume 1 42")
                          << QStringList("Mic volume set to: 21") << "Dial/MicValue"
                          << "21";
    QTest::newRow("DIRECT") << "MonitorMic" << 0
                            << QStringList({"sendMixerBlock (64,0)=1 (65,1)=1", sameBlock})
                            << twice("Monitor Mic set to: 1") << "Button/MonitorMicIsChecked"
                            << "true";
    QTest::newRow("headphone") << "Headphone" << 0
                               << QStringList("sendMixerBlock gain[0]=1 gain[1]=1") << QStringList()
                               << "Dial/HeadphoneValue"
                               << "0";
    QTest::newRow("MUTE") << "HeadphoneMute" << 0
                          << QStringList({"sendMixerBlock gain[0]=0 gain[1]=0", sameBlock})
                          << twice("Headphone Mute Button Clicked: Mute ON")
                          << "Button/HeadphoneMuteIsChecked"
                          << "true";
    QTest::newRow("DIM") << "HeadphoneDim" << 0
                         << QStringList({"sendMixerBlock gain[0]=0.01 gain[1]=0.01", sameBlock})
                         << twice("Headphone Dim Button Clicked: Dim ON")
                         << "Button/HeadphoneDimIsChecked"
                         << "true";
}

void RmTest::eachControlSendsLogsAndSaves()
{
    QFETCH(QString, name);
    QFETCH(int, db);
    QFETCH(QString, key);
    QFETCH(QString, value);
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
    expected[key] = value;
    QCOMPARE(saved(), expected);
}

void RmTest::turningTheHeadphoneKnobLogsNothing()
{
    buildQuietly();
    turn("Headphone", 5);
    QCOMPARE(takeSent().size(), 5);
    QCOMPARE(takeLog(), QStringList());
}

void RmTest::aFailingHeadphoneVolumeIsLogged()
{
    buildQuietly();
    QVERIFY(simulator().fail("sendMixerBlock", 1, ERROR_GEN_FAILURE));
    knob("Headphone").setValue(0);
    QCOMPARE(takeSent(), QStringList("sendMixerBlock gain[0]=1 gain[1]=1 !31"));
    QCOMPARE(takeLog(), QStringList("Failed to set headphone volume."));
    QCOMPARE(saved().value("Dial/HeadphoneValue"), "0");
}

void RmTest::theVolumeFollowsMuteAndDim_data()
{
    QTest::addColumn<int>("db");
    QTest::addColumn<bool>("muted");
    QTest::addColumn<bool>("dimmed");
    QTest::addColumn<double>("gain");
    QTest::newRow("plain") << -20 << false << false << 0.1;
    QTest::newRow("silent") << -80 << false << false << 0.0;
    QTest::newRow("maximum dimmed") << 6 << false << true << std::pow(10.0, -14.0 / 20);
    QTest::newRow("just audible dimmed") << -59 << false << true << std::pow(10.0, -79.0 / 20);
    QTest::newRow("dimmed to the floor") << -60 << false << true << 0.0;
    QTest::newRow("dimmed below the floor") << -61 << false << true << 0.0;
    QTest::newRow("muted") << 6 << true << false << 0.0;
    QTest::newRow("muted and dimmed") << 6 << true << true << 0.0;
}

void RmTest::theVolumeFollowsMuteAndDim()
{
    QFETCH(int, db);
    QFETCH(bool, muted);
    QFETCH(bool, dimmed);
    QFETCH(double, gain);
    build();
    QList<double> expected = simulator().mixerBlock();
    expected[8192] = expected[8193] = gain;
    button("HeadphoneMute").setSelected(muted);
    button("HeadphoneDim").setSelected(dimmed);
    knob("Headphone").setValue(db);
    QCOMPARE(simulator().mixerBlock(), expected);
    QCOMPARE(saved().value("Dial/HeadphoneValue"), QString::number(db));
}

void RmTest::thePhoneStaysAtUnityWhateverIsDone()
{
    build();
    const auto phone = [this] {
        const QList<double> block = simulator().mixerBlock();
        return QList<double>({block.at(2050), block.at(2083)});
    };
    QCOMPARE(phone(), QList<double>({1.0, 1.0}));
    turn("Mic", 1);
    turn("Headphone", 1);
    for (const char *name : {"MonitorMic", "HeadphoneMute", "HeadphoneDim"}) {
        click(name);
        QCOMPARE(phone(), QList<double>({1.0, 1.0}));
    }
}

void RmTest::switchingDirectOnAndOffLeavesTheBlockAsBuilt()
{
    build();
    const QList<double> built = simulator().mixerBlock();
    click("MonitorMic");
    QVERIFY(simulator().mixerBlock() != built);
    click("MonitorMic");
    QCOMPARE(simulator().mixerBlock(), built);
}

QTEST_MAIN(RmTest)
#include "tst_rm.moc"
