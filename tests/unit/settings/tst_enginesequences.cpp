#include "loghook.h"
#include "settingsfixture.h"

#include <QMap>
#include <QTimer>

namespace {

const QString rateDone = QStringLiteral("设置采样频率完成");
const QString startDone = QStringLiteral("设置初始化完成");

} // namespace

class TestEngineSequences : public SettingsFixture
{
    Q_OBJECT

private slots:
    void aBufferSizeIsSetBetweenStopAndRestart_data();
    void aBufferSizeIsSetBetweenStopAndRestart();
    void theBufferSizeTheDriverHasSendsAndSavesNothing();
    void aBufferSizeCapsTheLatency_data();
    void aBufferSizeCapsTheLatency();
    void theCapRunsTheLatencySequenceToItsEndFirst();
    void aLatencyBoxThatShowsTheCapAlreadyIsNotRunAgain();
    void anUnknownBufferSizeSendsNothing_data();
    void anUnknownBufferSizeSendsNothing();

    void aLatencyIsSetBetweenStopAndRestart_data();
    void aLatencyIsSetBetweenStopAndRestart();
    void theLatencyTheDriverHasSendsAndSavesNothing();
    void anUnknownLatencyIsTakenAsEight();
    void anUnknownLatencyEndsWhenTheDriverHasEight();

    void aSampleRateIsSavedBeforeTheOtgCycle_data();
    void aSampleRateIsSavedBeforeTheOtgCycle();
    void theSampleRateTheDriverHasIsSetAgain();
    void anUnknownSampleRateLeavesTheEngineStopped();

    void aSafeModeIsSetBetweenStopAndRestart_data();
    void aSafeModeIsSetBetweenStopAndRestart();
    void theSafeModeTheDriverHasIsSetAgain();
    void anUnknownSafeModeLeavesTheEngineStopped_data();
    void anUnknownSafeModeLeavesTheEngineStopped();

    void theStartSavesNothing();
    void savingKeepsTheOtherKeys();

    void aChangeWhileAnOtgCycleIsPendingGoesFirst();
    void aChangeBetweenTheHalvesOfAnOtgCycleCutsIn();
    void twoRateChangesRunTwoOtgCycles();
    void aStartWhileAnOtgCycleIsPendingRunsBoth();

    void unplugWithinABufferSizeChange();
    void unplugWithinTheNestedLatencyChange();
    void unplugWithinASampleRateChange();
    void unplugWithinTheOtgCycleOfASampleRateChange();
    void unplugWithinTheOtgCycleOfTheStart();
    void aDevicePluggedInAgainDoesNotKnowTheOldConnection();
};

void TestEngineSequences::aBufferSizeIsSetBetweenStopAndRestart_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("cap");
    const QMap<int, int> caps{{48, 8},   {64, 8},   {96, 16},  {128, 16},
                              {192, 24}, {256, 24}, {512, 32}, {1024, 32}};
    for (auto cap = caps.begin(); cap != caps.end(); ++cap)
        QTest::addRow("%d samples", cap.key()) << QString::number(cap.key()) << cap.value();
}

void TestEngineSequences::aBufferSizeIsSetBetweenStopAndRestart()
{
    QFETCH(QString, text);
    QFETCH(int, cap);
    openConnectedDialog();
    simulator().setBufferSize(333);
    choose("BufferSize", text);
    QCOMPARE(takeSent(),
             (QStringList{"getBufferSize", "getUsbLatency", "stopAudio", "setBufferSize " + text,
                          "restartAudio"}));
    QCOMPARE(takeLog(),
             (QStringList{"设置音频缓冲区大小为： " + text + " samples", "Buffer size: (address)",
                          "当前音频缓冲区大小： 333", u"设置USB延迟大小为： %1 Frame"_qs.arg(cap),
                          "当前USB延迟大小： 8", "音频缓冲区大小设置成功： " + text + " samples",
                          "音频缓冲区大小设置已保存： \"" + text + "\""}));
    QCOMPARE(saved(), QStringList{"Audio/BufferSize=" + text});
    QCOMPARE(QString::number(simulator().state().bufferSize), text);
    QVERIFY(simulator().state().engineRunning);
}

void TestEngineSequences::theBufferSizeTheDriverHasSendsAndSavesNothing()
{
    openConnectedDialog();
    simulator().setUsbLatency(32);
    simulator().setBufferSize(64);
    choose("BufferSize", u"64"_qs);
    QCOMPARE(takeSent(), QStringList{"getBufferSize"});
    QCOMPARE(takeLog(),
             (QStringList{"设置音频缓冲区大小为： 64 samples", "Buffer size: (address)",
                          "当前音频缓冲区大小： 64"}));
    QCOMPARE(saved(), QStringList());
    QCOMPARE(texts(), (QStringList{"64", "8", "44100", "Disabled"}));
}

void TestEngineSequences::aBufferSizeCapsTheLatency_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<quint32>("latency");
    QTest::addColumn<quint32>("cap");
    const QMap<int, quint32> caps{{48, 8},   {64, 8},   {96, 16},  {128, 16},
                                  {192, 24}, {256, 24}, {512, 32}, {1024, 32}};
    for (auto cap = caps.begin(); cap != caps.end(); ++cap) {
        for (const quint32 latency : {0u, 8u, 9u, 16u, 24u, 25u, 32u, 33u, 0xFFFFFFFFu})
            QTest::addRow("%d samples, %u frames", cap.key(), latency)
                << QString::number(cap.key()) << latency << cap.value();
    }
}

void TestEngineSequences::aBufferSizeCapsTheLatency()
{
    QFETCH(QString, text);
    QFETCH(quint32, latency);
    QFETCH(quint32, cap);
    openConnectedDialog();
    const QString capText = QString::number(cap);
    for (const QString &boxText : {u"8"_qs, u"16"_qs, u"24"_qs, u"32"_qs}) {
        simulator().setBufferSize(333);
        simulator().setUsbLatency(latency);
        presetBox("UsbLatency", boxText);
        const bool isLowered = latency > cap && boxText != capText;
        choose("BufferSize", text);

        QStringList sent{"getBufferSize", "getUsbLatency"};
        if (isLowered)
            sent += {"getUsbLatency", "stopAudio", "setUsbLatency " + capText, "restartAudio"};
        sent += {"stopAudio", "setBufferSize " + text, "restartAudio"};
        QCOMPARE(takeSent(), sent);
        QCOMPARE(box("UsbLatency").currentText(), latency > cap ? capText : boxText);
        QCOMPARE(simulator().state().usbLatency, isLowered ? cap : latency);
    }
}

void TestEngineSequences::theCapRunsTheLatencySequenceToItsEndFirst()
{
    openConnectedDialog();
    simulator().setUsbLatency(32);
    presetBox("UsbLatency", u"32"_qs);
    choose("BufferSize", u"64"_qs);
    QCOMPARE(takeSent(),
             (QStringList{"getBufferSize", "getUsbLatency", "getUsbLatency", "stopAudio",
                          "setUsbLatency 8", "restartAudio", "stopAudio", "setBufferSize 64",
                          "restartAudio"}));
    QCOMPARE(
        takeLog(),
        (QStringList{"设置音频缓冲区大小为： 64 samples", "Buffer size: (address)",
                     "当前音频缓冲区大小： 256", "设置USB延迟大小为： 8 Frame",
                     "当前USB延迟大小： 32", "设置USB延迟大小为： 8 Frame", "当前USB延迟大小： 32",
                     "USB延迟大小设置已保存： \"8\"", "音频缓冲区大小设置成功： 64 samples",
                     "音频缓冲区大小设置已保存： \"64\""}));
    QCOMPARE(texts(), (QStringList{"64", "8", "44100", "Disabled"}));
    QCOMPARE(saved(), (QStringList{"Audio/BufferSize=64", "USB/LatencySize=8"}));
}

void TestEngineSequences::aLatencyBoxThatShowsTheCapAlreadyIsNotRunAgain()
{
    openConnectedDialog();
    simulator().setUsbLatency(32);
    choose("BufferSize", u"64"_qs);
    QCOMPARE(takeSent(),
             (QStringList{"getBufferSize", "getUsbLatency", "stopAudio", "setBufferSize 64",
                          "restartAudio"}));
    QCOMPARE(saved(), QStringList{"Audio/BufferSize=64"});
    QCOMPARE(simulator().state().usbLatency, 32u);
}

void TestEngineSequences::anUnknownBufferSizeSendsNothing_data()
{
    QTest::addColumn<QString>("text");
    for (const char *text : {"100", "064", " 64", "64 ", "+64", "64.0", "0x40", "2048", "off"})
        QTest::newRow(text) << QString::fromLatin1(text);
}

void TestEngineSequences::anUnknownBufferSizeSendsNothing()
{
    QFETCH(QString, text);
    openConnectedDialog();
    box("BufferSize").addItem(text);
    choose("BufferSize", text);
    QCOMPARE(takeSent(), QStringList());
    QCOMPARE(takeLog(), QStringList{"未知的音频缓冲区大小选项： \"" + text + "\""});
    QCOMPARE(saved(), QStringList());
}

void TestEngineSequences::aLatencyIsSetBetweenStopAndRestart_data()
{
    QTest::addColumn<QString>("text");
    for (const char *text : {"8", "16", "24", "32"})
        QTest::newRow(text) << QString::fromLatin1(text);
}

void TestEngineSequences::aLatencyIsSetBetweenStopAndRestart()
{
    QFETCH(QString, text);
    openConnectedDialog();
    simulator().setUsbLatency(12);
    choose("UsbLatency", text);
    QCOMPARE(takeSent(),
             (QStringList{"getUsbLatency", "stopAudio", "setUsbLatency " + text, "restartAudio"}));
    QCOMPARE(takeLog(),
             (QStringList{"设置USB延迟大小为： " + text + " Frame", "当前USB延迟大小： 12",
                          "USB延迟大小设置已保存： \"" + text + "\""}));
    QCOMPARE(saved(), QStringList{"USB/LatencySize=" + text});
    QVERIFY(simulator().state().engineRunning);
}

void TestEngineSequences::theLatencyTheDriverHasSendsAndSavesNothing()
{
    openConnectedDialog();
    simulator().setUsbLatency(24);
    choose("UsbLatency", u"24"_qs);
    QCOMPARE(takeSent(), QStringList{"getUsbLatency"});
    QCOMPARE(takeLog(), (QStringList{"设置USB延迟大小为： 24 Frame", "当前USB延迟大小： 24"}));
    QCOMPARE(saved(), QStringList());
}

void TestEngineSequences::anUnknownLatencyIsTakenAsEight()
{
    openConnectedDialog();
    simulator().setUsbLatency(16);
    box("UsbLatency").addItem(u"016"_qs);
    choose("UsbLatency", u"016"_qs);
    QCOMPARE(takeSent(),
             (QStringList{"getUsbLatency", "stopAudio", "setUsbLatency 8", "restartAudio"}));
    QCOMPARE(takeLog(),
             (QStringList{"设置USB延迟大小为： 8 Frame", "当前USB延迟大小： 16",
                          "USB延迟大小设置已保存： \"016\""}));
    QCOMPARE(saved(), QStringList{"USB/LatencySize=016"});
}

void TestEngineSequences::anUnknownLatencyEndsWhenTheDriverHasEight()
{
    openConnectedDialog();
    box("UsbLatency").addItem(u"64"_qs);
    choose("UsbLatency", u"64"_qs);
    QCOMPARE(takeSent(), QStringList{"getUsbLatency"});
    QCOMPARE(takeLog(), (QStringList{"设置USB延迟大小为： 8 Frame", "当前USB延迟大小： 8"}));
    QCOMPARE(saved(), QStringList());
}

void TestEngineSequences::aSampleRateIsSavedBeforeTheOtgCycle_data()
{
    QTest::addColumn<QString>("text");
    for (const char *text : {"44100", "48000"})
        QTest::newRow(text) << QString::fromLatin1(text);
}

void TestEngineSequences::aSampleRateIsSavedBeforeTheOtgCycle()
{
    QFETCH(QString, text);
    openConnectedDialog();
    choose("SampleRate", text);
    QCOMPARE(
        takeSent(),
        (QStringList{"stopAudio", "setSampleRate " + text, "setWdmChannelCount 4", "initAudio"}));
    QCOMPARE(takeLog(),
             (QStringList{"设置音频采样率为： " + text + " Hz",
                          "音频采样率设置已保存： \"" + text + "\""}));
    QCOMPARE(saved(), QStringList{"Audio/SampleRate=" + text});
    QVERIFY(simulator().state().engineRunning);

    QTRY_VERIFY_WITH_TIMEOUT(hasLogged(rateDone), patience);
    QCOMPARE(takeSent(), (QStringList{"setOtgOff", "setOtgOn"}));
    QCOMPARE(takeLog(), QStringList{rateDone});
    finishOtgCycles();
    QCOMPARE(takeSent(), QStringList());
    QCOMPARE(simulator().state().wdmChannels, 4u);
}

void TestEngineSequences::theSampleRateTheDriverHasIsSetAgain()
{
    openConnectedDialog();
    simulator().setSampleRate(48000);
    choose("SampleRate", u"48000"_qs);
    QCOMPARE(
        takeSent(),
        (QStringList{"stopAudio", "setSampleRate 48000", "setWdmChannelCount 4", "initAudio"}));
}

void TestEngineSequences::anUnknownSampleRateLeavesTheEngineStopped()
{
    openConnectedDialog();
    box("SampleRate").addItem(u"96000"_qs);
    choose("SampleRate", u"96000"_qs);
    finishOtgCycles();
    QCOMPARE(takeSent(), QStringList{"stopAudio"});
    QCOMPARE(takeLog(), QStringList{"未知的音频采样率选项： \"96000\""});
    QCOMPARE(saved(), QStringList());
    QVERIFY(!simulator().state().engineRunning);
}

void TestEngineSequences::aSafeModeIsSetBetweenStopAndRestart_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("command");
    QTest::addColumn<quint32>("code");
    QTest::newRow("on") << u"Enabled"_qs << u"enableUsbSlowMode"_qs << 0xFFDC2090u;
    QTest::newRow("off") << u"Disabled"_qs << u"disableUsbSlowMode"_qs << 0xFFDC2094u;
}

void TestEngineSequences::aSafeModeIsSetBetweenStopAndRestart()
{
    QFETCH(QString, text);
    QFETCH(QString, command);
    QFETCH(quint32, code);
    openConnectedDialog();
    choose("SafeMode", text);
    const QList<Record> records = simulator().record();
    QCOMPARE(records.size(), 3);
    QCOMPARE(records.at(1).code, code);
    QCOMPARE(takeSent(), (QStringList{"stopAudio", command, "restartAudio"}));
    QCOMPARE(takeLog(), QStringList{"USB慢速模式设置已保存： \"" + text + "\""});
    QCOMPARE(saved(), QStringList{"USB/SlowMode=" + text});
    QCOMPARE(simulator().state().slowMode, text == "Enabled");
    QVERIFY(simulator().state().engineRunning);
}

void TestEngineSequences::theSafeModeTheDriverHasIsSetAgain()
{
    openConnectedDialog();
    simulator().setValue(VESMORA_SIM_SLOW_MODE, 1);
    choose("SafeMode", u"Enabled"_qs);
    QCOMPARE(takeSent(), (QStringList{"stopAudio", "enableUsbSlowMode", "restartAudio"}));
}

void TestEngineSequences::anUnknownSafeModeLeavesTheEngineStopped_data()
{
    QTest::addColumn<QString>("text");
    for (const char *text : {"enabled", "ENABLED", "disabled", "Enabled ", "1"})
        QTest::newRow(text) << QString::fromLatin1(text);
}

void TestEngineSequences::anUnknownSafeModeLeavesTheEngineStopped()
{
    QFETCH(QString, text);
    openConnectedDialog();
    box("SafeMode").addItem(text);
    box("SafeMode").setCurrentIndex(2);
    QCOMPARE(takeSent(), QStringList{"stopAudio"});
    QCOMPARE(takeLog(), QStringList{"未知的USB慢速模式选项： \"" + text + "\""});
    QCOMPARE(saved(), QStringList());
    QVERIFY(!simulator().state().engineRunning);
}

void TestEngineSequences::theStartSavesNothing()
{
    writeSettings({"Audio/BufferSize=48"});
    openConnectedDialog();
    dialog().initSettings();
    QTRY_VERIFY_WITH_TIMEOUT(hasLogged(startDone), patience);
    QCOMPARE(takeSent(),
             (QStringList{"getSampleRate", "stopAudio", "setSampleRate 44100",
                          "setWdmChannelCount 4", "setOtgOff", "setOtgOn", "initAudio"}));
    QCOMPARE(saved(), QStringList{"Audio/BufferSize=48"});
}

void TestEngineSequences::savingKeepsTheOtherKeys()
{
    writeSettings({"Audio/BufferSize=1024", "Other/Key=7", "USB/SlowMode=Enabled"});
    openConnectedDialog();
    choose("SafeMode", u"Disabled"_qs);
    QCOMPARE(saved(),
             (QStringList{"Audio/BufferSize=1024", "Other/Key=7", "USB/SlowMode=Disabled"}));
}

void TestEngineSequences::aChangeWhileAnOtgCycleIsPendingGoesFirst()
{
    openConnectedDialog();
    choose("SampleRate", u"48000"_qs);
    choose("SafeMode", u"Enabled"_qs);
    QTRY_VERIFY_WITH_TIMEOUT(hasLogged(rateDone), patience);
    QCOMPARE(
        takeSent(),
        (QStringList{"stopAudio", "setSampleRate 48000", "setWdmChannelCount 4", "initAudio",
                     "stopAudio", "enableUsbSlowMode", "restartAudio", "setOtgOff", "setOtgOn"}));
    QCOMPARE(saved(), (QStringList{"Audio/SampleRate=48000", "USB/SlowMode=Enabled"}));
}

void TestEngineSequences::aChangeBetweenTheHalvesOfAnOtgCycleCutsIn()
{
    openConnectedDialog();
    choose("SampleRate", u"48000"_qs);
    // Called after the dialog's own slot, that is right after the chip was switched off.
    connect(dialog().findChild<QTimer *>(), &QTimer::timeout, this,
            [this] { choose("UsbLatency", u"32"_qs); });
    QTRY_VERIFY_WITH_TIMEOUT(hasLogged(rateDone), patience);
    QCOMPARE(takeSent(),
             (QStringList{"stopAudio", "setSampleRate 48000", "setWdmChannelCount 4", "initAudio",
                          "setOtgOff", "getUsbLatency", "stopAudio", "setUsbLatency 32",
                          "restartAudio", "setOtgOn"}));
}

void TestEngineSequences::twoRateChangesRunTwoOtgCycles()
{
    openConnectedDialog();
    choose("SampleRate", u"48000"_qs);
    choose("SampleRate", u"44100"_qs);
    QCOMPARE(
        takeSent(),
        (QStringList{"stopAudio", "setSampleRate 48000", "setWdmChannelCount 4", "initAudio",
                     "stopAudio", "setSampleRate 44100", "setWdmChannelCount 4", "initAudio"}));
    takeLog();
    finishOtgCycles();
    // Nothing orders the two, except that each switches off before it switches on.
    QStringList sent = takeSent();
    QCOMPARE(sent.value(0), u"setOtgOff"_qs);
    QCOMPARE(sent.value(3), u"setOtgOn"_qs);
    sent.sort();
    QCOMPARE(sent, (QStringList{"setOtgOff", "setOtgOff", "setOtgOn", "setOtgOn"}));
    QCOMPARE(takeLog(), (QStringList{rateDone, rateDone}));
    QCOMPARE(saved(), QStringList{"Audio/SampleRate=44100"});
}

void TestEngineSequences::aStartWhileAnOtgCycleIsPendingRunsBoth()
{
    writeSettings({"Audio/BufferSize=48"});
    openConnectedDialog();
    choose("SampleRate", u"44100"_qs);
    dialog().initSettings();
    finishOtgCycles();
    QStringList sent = takeSent();
    QCOMPARE(
        sent.mid(0, 8),
        (QStringList{"stopAudio", "setSampleRate 44100", "setWdmChannelCount 4", "initAudio",
                     "getSampleRate", "stopAudio", "setSampleRate 44100", "setWdmChannelCount 4"}));
    sent = sent.mid(8);
    sent.sort();
    QCOMPARE(sent, (QStringList{"initAudio", "setOtgOff", "setOtgOff", "setOtgOn", "setOtgOn"}));
    QVERIFY(hasLogged(rateDone));
    QVERIFY(hasLogged(startDone));
}

void TestEngineSequences::unplugWithinABufferSizeChange()
{
    openConnectedDialog();
    const LogHook hook(u"当前USB延迟大小："_qs, [this] { simulator().unplug(); });
    choose("BufferSize", u"96"_qs);
    QVERIFY(hook.wasReached());
    QCOMPARE(takeSent(), (QStringList{"getBufferSize", "getUsbLatency", "stopAudio !1167"}));
    QCOMPARE(takeLog().constLast(), u"停止音频失败，可能是驱动未正确加载或设备未连接。"_qs);
    QCOMPARE(saved(), QStringList());
    QCOMPARE(texts(), (QStringList{"96", "8", "44100", "Disabled"}));
}

void TestEngineSequences::unplugWithinTheNestedLatencyChange()
{
    openConnectedDialog();
    simulator().setUsbLatency(32);
    presetBox("UsbLatency", u"32"_qs);
    const LogHook hook(u"USB延迟大小设置已保存："_qs, [this] { simulator().unplug(); });
    choose("BufferSize", u"64"_qs);
    QVERIFY(hook.wasReached());
    QCOMPARE(takeSent(),
             (QStringList{"getBufferSize", "getUsbLatency", "getUsbLatency", "stopAudio",
                          "setUsbLatency 8", "restartAudio", "stopAudio !1167"}));
    QCOMPARE(saved(), QStringList{"USB/LatencySize=8"});
    QCOMPARE(texts(), (QStringList{"64", "8", "44100", "Disabled"}));
}

void TestEngineSequences::unplugWithinASampleRateChange()
{
    openConnectedDialog();
    const LogHook hook(u"设置音频采样率为："_qs, [this] { simulator().unplug(); });
    choose("SampleRate", u"48000"_qs);
    QVERIFY(hook.wasReached());
    finishOtgCycles();
    QCOMPARE(takeSent(), (QStringList{"stopAudio", "setSampleRate 48000 !1167"}));
    QCOMPARE(takeLog(),
             (QStringList{"设置音频采样率为： 48000 Hz",
                          "设置音频采样率失败，可能是驱动未正确加载或设备未连接。"}));
    QCOMPARE(saved(), QStringList());
}

void TestEngineSequences::unplugWithinTheOtgCycleOfASampleRateChange()
{
    openConnectedDialog();
    choose("SampleRate", u"48000"_qs);
    takeSent();
    takeLog();
    QVERIFY(simulator().unplug());
    QTRY_VERIFY_WITH_TIMEOUT(hasLogged(rateDone), patience);
    QCOMPARE(takeSent(), (QStringList{"setOtgOff !1167", "setOtgOn !1167"}));
    QCOMPARE(takeLog(), QStringList{rateDone});
    QCOMPARE(saved(), QStringList{"Audio/SampleRate=48000"});
}

void TestEngineSequences::unplugWithinTheOtgCycleOfTheStart()
{
    writeSettings({"Audio/BufferSize=48"});
    openConnectedDialog();
    dialog().initSettings();
    takeSent();
    takeLog();
    QVERIFY(simulator().unplug());
    const QString failure = u"初始化音频失败，可能是驱动未正确加载或设备未连接。"_qs;
    QTRY_VERIFY_WITH_TIMEOUT(hasLogged(failure), patience);
    QCOMPARE(takeSent(), (QStringList{"setOtgOff !1167", "setOtgOn !1167", "initAudio !1167"}));
    QCOMPARE(takeLog(), QStringList{failure});
}

void TestEngineSequences::aDevicePluggedInAgainDoesNotKnowTheOldConnection()
{
    openConnectedDialog();
    QVERIFY(simulator().unplug());
    QVERIFY(simulator().plug(VESMORA_PID_RX1));
    choose("SafeMode", u"Enabled"_qs);
    QCOMPARE(takeSent(), QStringList{"stopAudio !1167"});
    QCOMPARE(takeLog(), QStringList{"停止音频失败，可能是驱动未正确加载或设备未连接。"});
    QVERIFY(dialog().createDevice());
    choose("SafeMode", u"Disabled"_qs);
    QCOMPARE(takeSent(), (QStringList{"stopAudio", "disableUsbSlowMode", "restartAudio"}));
}

QTEST_MAIN(TestEngineSequences)
#include "tst_enginesequences.moc"
