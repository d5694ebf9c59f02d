#include "mixerfixture.h"

#include <QTest>

/// The RX1 panel in the running program.
class tst_Rx1 : public MixerFixture
{
    Q_OBJECT

public:
    tst_Rx1()
        : MixerFixture("rx1")
    { }

private slots:
    void theFirstStartBringsTheEngineUp();
    void typedTextsAreReadAsNumbers();
};

void tst_Rx1::theFirstStartBringsTheEngineUp()
{
    QVERIFY(start());
    QVERIFY(plug("rx1"));
    QVERIFY(log().waitFor("设置初始化完成"));
    QCOMPARE(
        sentBesides("setWdmChannelCount"),
        QStringList({"open", "getBufferSize", "getUsbLatency", "stopAudio", "setBufferSize 192",
                     "restartAudio", "getSampleRate", "stopAudio", "setSampleRate 44100",
                     "setWdmChannelCount 4", "setOtgOff", "setOtgOn", "initAudio"}));
    QCOMPARE(sentBesides("getFirmwareVersion"),
             QStringList({"open", "getDevicePid", "getFirmwareVersion", "close"}));
    QCOMPARE(iniFile("setting.ini").values().value("Audio/BufferSize"), "192");
}

void tst_Rx1::typedTextsAreReadAsNumbers()
{
    struct Typing {
        const char *text;
        int value;
    };
    const PanelControl &gain = model().control("Mic");
    QVERIFY(showStoredPanel());
    // Above the maximum, and with letters alone, which change nothing.
    for (const Typing &typing :
         {Typing{"12", 12}, Typing{"7dB", 7}, Typing{"99", 42}, Typing{"loud", 42}}) {
        QVERIFY(pointer().doubleClick(place(gain)));
        QVERIFY(pointer().type(typing.text));
        compare();
        QVERIFY(pointer().key("Return"));
        expected().act(gain, typing.value);
        compare();
        QVERIFY(waitForSaved(gain, typing.value));
    }
}

QTEST_GUILESS_MAIN(tst_Rx1)
#include "tst_rx1.moc"
