#include "settingsfixture.h"

#include <QTimer>

namespace {

const QString startDone = "设置初始化完成";

} // namespace

/// What the settings dialog makes of a choice: its value for the engine, and its place in the file.
class tst_SettingsChoices : public SettingsFixture
{
    Q_OBJECT

private slots:
    void anAcceptedChoiceIsKept_data();
    void anAcceptedChoiceIsKept();
    void aRefusedChoiceIsShownAndNotKept_data();
    void aRefusedChoiceIsShownAndNotKept();
    void savingKeepsTheOtherKeys();
    void theStartSavesNothing();

    void theCapRunsTheLatencySequenceToItsEndFirst();
    void theCapIsShown_data();
    void theCapIsShown();
    void aLatencyBoxThatShowsTheCapAlreadyIsNotRunAgain();

    void anUnknownBufferSizeSendsNothing_data();
    void anUnknownBufferSizeSendsNothing();
    void anUnknownLatencyIsTakenAsEight();
    void anUnknownLatencyEndsWhenTheDriverHasEight();
    void anUnknownSampleRateLeavesTheEngineStopped();
    void anUnknownSafeModeLeavesTheEngineStopped_data();
    void anUnknownSafeModeLeavesTheEngineStopped();

private:
    static void addChoices();
};

/// One item a box, and the last thing that the log says when it was kept.
void tst_SettingsChoices::addChoices()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("entry");
    QTest::addColumn<QString>("logged");
    QTest::newRow("buffer size") << QByteArray("BufferSize") << "1024"
                                 << "Audio/BufferSize=1024"
                                 << "音频缓冲区大小设置已保存： \"1024\"";
    QTest::newRow("USB latency") << QByteArray("UsbLatency") << "32"
                                 << "USB/LatencySize=32"
                                 << "USB延迟大小设置已保存： \"32\"";
    QTest::newRow("sample rate") << QByteArray("SampleRate") << "48000"
                                 << "Audio/SampleRate=48000"
                                 << "音频采样率设置已保存： \"48000\"";
    QTest::newRow("safe mode") << QByteArray("SafeMode") << "Enabled"
                               << "USB/SlowMode=Enabled"
                               << "USB慢速模式设置已保存： \"Enabled\"";
}

void tst_SettingsChoices::anAcceptedChoiceIsKept_data()
{
    addChoices();
}

void tst_SettingsChoices::anAcceptedChoiceIsKept()
{
    QFETCH(QByteArray, name);
    QFETCH(QString, text);
    QFETCH(QString, entry);
    QFETCH(QString, logged);
    openConnectedDialog();
    choose(name.constData(), text);
    QCOMPARE(takeLog().constLast(), logged);
    QCOMPARE(saved(), QStringList{entry});
}

void tst_SettingsChoices::aRefusedChoiceIsShownAndNotKept_data()
{
    addChoices();
}

void tst_SettingsChoices::aRefusedChoiceIsShownAndNotKept()
{
    QFETCH(QByteArray, name);
    QFETCH(QString, text);
    QFETCH(QString, logged);
    openConnectedDialog();
    QVERIFY(simulator().fail("stopAudio", 1, ERROR_GEN_FAILURE));
    choose(name.constData(), text);
    const QStringList log = takeLog();
    QCOMPARE(log.constLast(), "停止音频失败，可能是驱动未正确加载或设备未连接。");
    QVERIFY(!log.contains(logged));
    QCOMPARE(saved(), QStringList());
    QCOMPARE(box(name.constData()).currentText(), text);
}

void tst_SettingsChoices::theCapIsShown_data()
{
    QTest::addColumn<quint32>("latency");
    QTest::addColumn<QString>("shown");
    for (const quint32 latency : {8u, 16u, 17u, 0xFFFFFFFFu}) {
        for (const char *shown : {"8", "16", "24", "32"})
            QTest::addRow("%u frames, %s shown", latency, shown) << latency << QString(shown);
    }
}

void tst_SettingsChoices::theCapIsShown()
{
    QFETCH(quint32, latency);
    QFETCH(QString, shown);
    openConnectedDialog();
    simulator().setUsbLatency(latency);
    presetBox("UsbLatency", shown);
    choose("BufferSize", "96");
    const bool isTooHigh = latency > 16;
    QCOMPARE(box("UsbLatency").currentText(), isTooHigh ? "16" : shown);
    QCOMPARE(simulator().state().usbLatency, isTooHigh && shown != "16" ? 16u : latency);
}

void tst_SettingsChoices::savingKeepsTheOtherKeys()
{
    writeSettings({"Audio/BufferSize=1024", "Other/Key=7", "USB/SlowMode=Enabled"});
    openConnectedDialog();
    choose("SafeMode", "Disabled");
    QCOMPARE(saved(),
             (QStringList{"Audio/BufferSize=1024", "Other/Key=7", "USB/SlowMode=Disabled"}));
}

void tst_SettingsChoices::theStartSavesNothing()
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

void tst_SettingsChoices::theCapRunsTheLatencySequenceToItsEndFirst()
{
    openConnectedDialog();
    simulator().setUsbLatency(32);
    presetBox("UsbLatency", "32");
    choose("BufferSize", "64");
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

void tst_SettingsChoices::aLatencyBoxThatShowsTheCapAlreadyIsNotRunAgain()
{
    openConnectedDialog();
    simulator().setUsbLatency(32);
    choose("BufferSize", "64");
    QCOMPARE(takeSent(),
             (QStringList{"getBufferSize", "getUsbLatency", "stopAudio", "setBufferSize 64",
                          "restartAudio"}));
    QCOMPARE(saved(), QStringList{"Audio/BufferSize=64"});
    QCOMPARE(simulator().state().usbLatency, 32u);
}

void tst_SettingsChoices::anUnknownBufferSizeSendsNothing_data()
{
    QTest::addColumn<QString>("text");
    for (const char *text : {"100", "064", " 64", "64 ", "+64", "64.0", "0x40", "2048", "off"})
        QTest::newRow(text) << QString::fromLatin1(text);
}

void tst_SettingsChoices::anUnknownBufferSizeSendsNothing()
{
    QFETCH(QString, text);
    openConnectedDialog();
    box("BufferSize").addItem(text);
    choose("BufferSize", text);
    QCOMPARE(takeSent(), QStringList());
    QCOMPARE(takeLog(), QStringList{"未知的音频缓冲区大小选项： \"" + text + "\""});
    QCOMPARE(saved(), QStringList());
}

void tst_SettingsChoices::anUnknownLatencyIsTakenAsEight()
{
    openConnectedDialog();
    simulator().setUsbLatency(16);
    box("UsbLatency").addItem("016");
    choose("UsbLatency", "016");
    QCOMPARE(takeSent(),
             (QStringList{"getUsbLatency", "stopAudio", "setUsbLatency 8", "restartAudio"}));
    QCOMPARE(takeLog(),
             (QStringList{"设置USB延迟大小为： 8 Frame", "当前USB延迟大小： 16",
                          "USB延迟大小设置已保存： \"016\""}));
    QCOMPARE(saved(), QStringList{"USB/LatencySize=016"});
}

void tst_SettingsChoices::anUnknownLatencyEndsWhenTheDriverHasEight()
{
    openConnectedDialog();
    box("UsbLatency").addItem("64");
    choose("UsbLatency", "64");
    QCOMPARE(takeSent(), QStringList{"getUsbLatency"});
    QCOMPARE(takeLog(), (QStringList{"设置USB延迟大小为： 8 Frame", "当前USB延迟大小： 8"}));
    QCOMPARE(saved(), QStringList());
}

void tst_SettingsChoices::anUnknownSampleRateLeavesTheEngineStopped()
{
    openConnectedDialog();
    box("SampleRate").addItem("96000");
    choose("SampleRate", "96000");
    finishOtgCycles();
    QCOMPARE(takeSent(), QStringList{"stopAudio"});
    QCOMPARE(takeLog(), QStringList{"未知的音频采样率选项： \"96000\""});
    QCOMPARE(saved(), QStringList());
    QVERIFY(!simulator().state().engineRunning);
}

void tst_SettingsChoices::anUnknownSafeModeLeavesTheEngineStopped_data()
{
    QTest::addColumn<QString>("text");
    for (const char *text : {"enabled", "ENABLED", "disabled", "Enabled ", "1"})
        QTest::newRow(text) << QString::fromLatin1(text);
}

void tst_SettingsChoices::anUnknownSafeModeLeavesTheEngineStopped()
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

QTEST_MAIN(tst_SettingsChoices)
#include "tst_settingschoices.moc"
