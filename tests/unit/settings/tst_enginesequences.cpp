#include "enginefixture.h"
#include "loghook.h"

#include <QMap>
#include <QTimer>

namespace {

const QString rateDone = "设置采样频率完成";
const QString startDone = "设置初始化完成";

} // namespace

class tst_EngineSequences : public EngineFixture
{
    Q_OBJECT

private slots:
    void aBufferSizeIsSetBetweenStopAndRestart_data();
    void aBufferSizeIsSetBetweenStopAndRestart();
    void theBufferSizeTheDriverHasSendsAndSavesNothing();
    void aBufferSizeCapsTheLatency_data();
    void aBufferSizeCapsTheLatency();

    void aLatencyIsSetBetweenStopAndRestart_data();
    void aLatencyIsSetBetweenStopAndRestart();
    void theLatencyTheDriverHasSendsAndSavesNothing();

    void aSampleRateIsSavedBeforeTheOtgCycle_data();
    void aSampleRateIsSavedBeforeTheOtgCycle();
    void theSampleRateTheDriverHasIsSetAgain();

    void aSafeModeIsSetBetweenStopAndRestart_data();
    void aSafeModeIsSetBetweenStopAndRestart();
    void theSafeModeTheDriverHasIsSetAgain();

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

void tst_EngineSequences::aBufferSizeIsSetBetweenStopAndRestart_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("cap");
    const QMap<int, int> caps{{48, 8},   {64, 8},   {96, 16},  {128, 16},
                              {192, 24}, {256, 24}, {512, 32}, {1024, 32}};
    for (auto cap = caps.begin(); cap != caps.end(); ++cap)
        QTest::addRow("%d samples", cap.key()) << QString::number(cap.key()) << cap.value();
}

void tst_EngineSequences::aBufferSizeIsSetBetweenStopAndRestart()
{
    QFETCH(QString, text);
    QFETCH(int, cap);
    openConnectedEngine();
    simulator().setBufferSize(333);
    choose("BufferSize", text);
    QCOMPARE(takeSent(),
             (QStringList{"getBufferSize", "getUsbLatency", "stopAudio", "setBufferSize " + text,
                          "restartAudio"}));
    QCOMPARE(
        takeLog(),
        (QStringList{"设置音频缓冲区大小为： " + text + " samples", "Buffer size: (address)",
                     "当前音频缓冲区大小： 333", QString("设置USB延迟大小为： %1 Frame").arg(cap),
                     "当前USB延迟大小： 8", "音频缓冲区大小设置成功： " + text + " samples",
                     "kept BufferSize=" + text}));
    QCOMPARE(kept(), QStringList{"BufferSize=" + text});
    QCOMPARE(QString::number(simulator().state().bufferSize), text);
    QVERIFY(simulator().state().engineRunning);
}

void tst_EngineSequences::theBufferSizeTheDriverHasSendsAndSavesNothing()
{
    openConnectedEngine();
    simulator().setUsbLatency(32);
    simulator().setBufferSize(64);
    choose("BufferSize", "64");
    QCOMPARE(takeSent(), QStringList{"getBufferSize"});
    QCOMPARE(takeLog(),
             (QStringList{"设置音频缓冲区大小为： 64 samples", "Buffer size: (address)",
                          "当前音频缓冲区大小： 64"}));
    QCOMPARE(kept(), QStringList());
    QCOMPARE(texts(), (QStringList{"64", "8", "44100", "Disabled"}));
}

void tst_EngineSequences::aBufferSizeCapsTheLatency_data()
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

void tst_EngineSequences::aBufferSizeCapsTheLatency()
{
    QFETCH(QString, text);
    QFETCH(quint32, latency);
    QFETCH(quint32, cap);
    openConnectedEngine();
    const QString capText = QString::number(cap);
    for (const QString chosen : {"8", "16", "24", "32"}) {
        simulator().setBufferSize(333);
        simulator().setUsbLatency(latency);
        preset("UsbLatency", chosen);
        const bool isLowered = latency > cap && chosen != capText;
        choose("BufferSize", text);

        QStringList sent{"getBufferSize", "getUsbLatency"};
        if (isLowered)
            sent += {"getUsbLatency", "stopAudio", "setUsbLatency " + capText, "restartAudio"};
        sent += {"stopAudio", "setBufferSize " + text, "restartAudio"};
        QCOMPARE(takeSent(), sent);
        QCOMPARE(texts().at(1), latency > cap ? capText : chosen);
        QCOMPARE(simulator().state().usbLatency, isLowered ? cap : latency);
    }
}

void tst_EngineSequences::aLatencyIsSetBetweenStopAndRestart_data()
{
    QTest::addColumn<QString>("text");
    for (const char *text : {"8", "16", "24", "32"})
        QTest::newRow(text) << QString::fromLatin1(text);
}

void tst_EngineSequences::aLatencyIsSetBetweenStopAndRestart()
{
    QFETCH(QString, text);
    openConnectedEngine();
    simulator().setUsbLatency(12);
    choose("UsbLatency", text);
    QCOMPARE(takeSent(),
             (QStringList{"getUsbLatency", "stopAudio", "setUsbLatency " + text, "restartAudio"}));
    QCOMPARE(takeLog(),
             (QStringList{"设置USB延迟大小为： " + text + " Frame", "当前USB延迟大小： 12",
                          "kept UsbLatency=" + text}));
    QCOMPARE(kept(), QStringList{"UsbLatency=" + text});
    QVERIFY(simulator().state().engineRunning);
}

void tst_EngineSequences::theLatencyTheDriverHasSendsAndSavesNothing()
{
    openConnectedEngine();
    simulator().setUsbLatency(24);
    choose("UsbLatency", "24");
    QCOMPARE(takeSent(), QStringList{"getUsbLatency"});
    QCOMPARE(takeLog(), (QStringList{"设置USB延迟大小为： 24 Frame", "当前USB延迟大小： 24"}));
    QCOMPARE(kept(), QStringList());
}

void tst_EngineSequences::aSampleRateIsSavedBeforeTheOtgCycle_data()
{
    QTest::addColumn<QString>("text");
    for (const char *text : {"44100", "48000"})
        QTest::newRow(text) << QString::fromLatin1(text);
}

void tst_EngineSequences::aSampleRateIsSavedBeforeTheOtgCycle()
{
    QFETCH(QString, text);
    openConnectedEngine();
    choose("SampleRate", text);
    QCOMPARE(
        takeSent(),
        (QStringList{"stopAudio", "setSampleRate " + text, "setWdmChannelCount 4", "initAudio"}));
    QCOMPARE(takeLog(),
             (QStringList{"设置音频采样率为： " + text + " Hz", "kept SampleRate=" + text}));
    QCOMPARE(kept(), QStringList{"SampleRate=" + text});
    QVERIFY(simulator().state().engineRunning);

    QTRY_VERIFY_WITH_TIMEOUT(hasLogged(rateDone), patience);
    QCOMPARE(takeSent(), (QStringList{"setOtgOff", "setOtgOn"}));
    QCOMPARE(takeLog(), QStringList{rateDone});
    finishOtgCycles();
    QCOMPARE(takeSent(), QStringList());
    QCOMPARE(simulator().state().wdmChannels, 4u);
}

void tst_EngineSequences::theSampleRateTheDriverHasIsSetAgain()
{
    openConnectedEngine();
    simulator().setSampleRate(48000);
    choose("SampleRate", "48000");
    QCOMPARE(
        takeSent(),
        (QStringList{"stopAudio", "setSampleRate 48000", "setWdmChannelCount 4", "initAudio"}));
}

void tst_EngineSequences::aSafeModeIsSetBetweenStopAndRestart_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("command");
    QTest::addColumn<quint32>("code");
    QTest::newRow("on") << "Enabled"
                        << "enableUsbSlowMode" << 0xFFDC2090u;
    QTest::newRow("off") << "Disabled"
                         << "disableUsbSlowMode" << 0xFFDC2094u;
}

void tst_EngineSequences::aSafeModeIsSetBetweenStopAndRestart()
{
    QFETCH(QString, text);
    QFETCH(QString, command);
    QFETCH(quint32, code);
    openConnectedEngine();
    choose("SafeMode", text);
    const QList<Record> records = simulator().record();
    QCOMPARE(records.size(), 3);
    QCOMPARE(records.at(1).code, code);
    QCOMPARE(takeSent(), (QStringList{"stopAudio", command, "restartAudio"}));
    QCOMPARE(takeLog(), QStringList{"kept SafeMode=" + text});
    QCOMPARE(kept(), QStringList{"SafeMode=" + text});
    QCOMPARE(simulator().state().slowMode, text == "Enabled");
    QVERIFY(simulator().state().engineRunning);
}

void tst_EngineSequences::theSafeModeTheDriverHasIsSetAgain()
{
    openConnectedEngine();
    simulator().setValue(VESMORA_SIM_SLOW_MODE, 1);
    choose("SafeMode", "Enabled");
    QCOMPARE(takeSent(), (QStringList{"stopAudio", "enableUsbSlowMode", "restartAudio"}));
}

void tst_EngineSequences::aChangeWhileAnOtgCycleIsPendingGoesFirst()
{
    openConnectedEngine();
    choose("SampleRate", "48000");
    choose("SafeMode", "Enabled");
    QTRY_VERIFY_WITH_TIMEOUT(hasLogged(rateDone), patience);
    QCOMPARE(
        takeSent(),
        (QStringList{"stopAudio", "setSampleRate 48000", "setWdmChannelCount 4", "initAudio",
                     "stopAudio", "enableUsbSlowMode", "restartAudio", "setOtgOff", "setOtgOn"}));
    QCOMPARE(kept(), (QStringList{"SafeMode=Enabled", "SampleRate=48000"}));
}

void tst_EngineSequences::aChangeBetweenTheHalvesOfAnOtgCycleCutsIn()
{
    openConnectedEngine();
    choose("SampleRate", "48000");
    // Called after the dialog's own slot, that is right after the chip was switched off.
    connect(timers().constFirst(), &QTimer::timeout, this, [this] { choose("UsbLatency", "32"); });
    QTRY_VERIFY_WITH_TIMEOUT(hasLogged(rateDone), patience);
    QCOMPARE(takeSent(),
             (QStringList{"stopAudio", "setSampleRate 48000", "setWdmChannelCount 4", "initAudio",
                          "setOtgOff", "getUsbLatency", "stopAudio", "setUsbLatency 32",
                          "restartAudio", "setOtgOn"}));
}

void tst_EngineSequences::twoRateChangesRunTwoOtgCycles()
{
    openConnectedEngine();
    choose("SampleRate", "48000");
    choose("SampleRate", "44100");
    QCOMPARE(
        takeSent(),
        (QStringList{"stopAudio", "setSampleRate 48000", "setWdmChannelCount 4", "initAudio",
                     "stopAudio", "setSampleRate 44100", "setWdmChannelCount 4", "initAudio"}));
    takeLog();
    finishOtgCycles();
    // Nothing orders the two, except that each switches off before it switches on.
    QStringList sent = takeSent();
    QCOMPARE(sent.value(0), "setOtgOff");
    QCOMPARE(sent.value(3), "setOtgOn");
    sent.sort();
    QCOMPARE(sent, (QStringList{"setOtgOff", "setOtgOff", "setOtgOn", "setOtgOn"}));
    QCOMPARE(takeLog(), (QStringList{rateDone, rateDone}));
    QCOMPARE(kept(), QStringList{"SampleRate=44100"});
}

void tst_EngineSequences::aStartWhileAnOtgCycleIsPendingRunsBoth()
{
    openConnectedEngine();
    choose("SampleRate", "44100");
    engine().start(44100);
    finishOtgCycles();
    QStringList sent = takeSent();
    QCOMPARE(sent.mid(0, 7),
             (QStringList{"stopAudio", "setSampleRate 44100", "setWdmChannelCount 4", "initAudio",
                          "stopAudio", "setSampleRate 44100", "setWdmChannelCount 4"}));
    sent = sent.mid(7);
    sent.sort();
    QCOMPARE(sent, (QStringList{"initAudio", "setOtgOff", "setOtgOff", "setOtgOn", "setOtgOn"}));
    QVERIFY(hasLogged(rateDone));
    QVERIFY(hasLogged(startDone));
}

void tst_EngineSequences::unplugWithinABufferSizeChange()
{
    openConnectedEngine();
    const LogHook hook("当前USB延迟大小：", [this] { simulator().unplug(); });
    choose("BufferSize", "96");
    QVERIFY(hook.wasReached());
    QCOMPARE(takeSent(), (QStringList{"getBufferSize", "getUsbLatency", "stopAudio !1167"}));
    QCOMPARE(takeLog().constLast(), "停止音频失败，可能是驱动未正确加载或设备未连接。");
    QCOMPARE(kept(), QStringList());
    QCOMPARE(texts(), (QStringList{"96", "8", "44100", "Disabled"}));
}

void tst_EngineSequences::unplugWithinTheNestedLatencyChange()
{
    openConnectedEngine();
    simulator().setUsbLatency(32);
    preset("UsbLatency", "32");
    const LogHook hook("kept UsbLatency=", [this] { simulator().unplug(); });
    choose("BufferSize", "64");
    QVERIFY(hook.wasReached());
    QCOMPARE(takeSent(),
             (QStringList{"getBufferSize", "getUsbLatency", "getUsbLatency", "stopAudio",
                          "setUsbLatency 8", "restartAudio", "stopAudio !1167"}));
    QCOMPARE(kept(), QStringList{"UsbLatency=8"});
    QCOMPARE(texts(), (QStringList{"64", "8", "44100", "Disabled"}));
}

void tst_EngineSequences::unplugWithinASampleRateChange()
{
    openConnectedEngine();
    const LogHook hook("设置音频采样率为：", [this] { simulator().unplug(); });
    choose("SampleRate", "48000");
    QVERIFY(hook.wasReached());
    finishOtgCycles();
    QCOMPARE(takeSent(), (QStringList{"stopAudio", "setSampleRate 48000 !1167"}));
    QCOMPARE(takeLog(),
             (QStringList{"设置音频采样率为： 48000 Hz",
                          "设置音频采样率失败，可能是驱动未正确加载或设备未连接。"}));
    QCOMPARE(kept(), QStringList());
}

void tst_EngineSequences::unplugWithinTheOtgCycleOfASampleRateChange()
{
    openConnectedEngine();
    choose("SampleRate", "48000");
    takeSent();
    takeLog();
    QVERIFY(simulator().unplug());
    QTRY_VERIFY_WITH_TIMEOUT(hasLogged(rateDone), patience);
    QCOMPARE(takeSent(), (QStringList{"setOtgOff !1167", "setOtgOn !1167"}));
    QCOMPARE(takeLog(), QStringList{rateDone});
    QCOMPARE(kept(), QStringList{"SampleRate=48000"});
}

void tst_EngineSequences::unplugWithinTheOtgCycleOfTheStart()
{
    openConnectedEngine();
    engine().start(44100);
    takeSent();
    takeLog();
    QVERIFY(simulator().unplug());
    const QString failure = "初始化音频失败，可能是驱动未正确加载或设备未连接。";
    QTRY_VERIFY_WITH_TIMEOUT(hasLogged(failure), patience);
    QCOMPARE(takeSent(), (QStringList{"setOtgOff !1167", "setOtgOn !1167", "initAudio !1167"}));
    QCOMPARE(takeLog(), QStringList{failure});
}

void tst_EngineSequences::aDevicePluggedInAgainDoesNotKnowTheOldConnection()
{
    openConnectedEngine();
    QVERIFY(simulator().unplug());
    QVERIFY(simulator().plug(VESMORA_PID_RX1));
    choose("SafeMode", "Enabled");
    QCOMPARE(takeSent(), QStringList{"stopAudio !1167"});
    QCOMPARE(takeLog(), QStringList{"停止音频失败，可能是驱动未正确加载或设备未连接。"});
    QVERIFY(engine().openDevice());
    choose("SafeMode", "Disabled");
    QCOMPARE(takeSent(), (QStringList{"stopAudio", "disableUsbSlowMode", "restartAudio"}));
}

QTEST_GUILESS_MAIN(tst_EngineSequences)
#include "tst_enginesequences.moc"
