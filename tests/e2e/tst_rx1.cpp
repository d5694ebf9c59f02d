#include "mixerpaneltest.h"

#include <QTest>

namespace {

// The rows of the matrix that hold a stereo pair.
const QList<int> pairs{96, 128, 130};

enum Knobs { Gain, Headphone, Phone };
enum Buttons { Instrument, Pad, Phantom, Direct, Mute, Dim };

// Where direct monitoring takes the microphone.
const QStringList monitored{QStringLiteral("(64,0)"), QStringLiteral("(65,1)")};

QList<KnobModel> knobs()
{
    return {gainKnob("gain", Gain, QStringLiteral("Dial/MicValue"), 42, 1),
            KnobModel{"headphone volume",
                      Headphone,
                      QStringLiteral("Dial/HeadphoneValue"),
                      -80,
                      6,
                      -20,
                      QStringLiteral("sendMixerBlock gain[0]={gain} gain[1]={gain}"),
                      {QStringLiteral("Headphone volume set to: {gain}")}},
            KnobModel{"phone to headphone",
                      Phone,
                      QStringLiteral("Dial/OtgToHpValue"),
                      -80,
                      6,
                      -20,
                      QStringLiteral("sendMixerBlock (64,2)={gain} (65,3)={gain}"),
                      {QStringLiteral("OTG to HP volume set to: {gain}")}}};
}

QList<ButtonModel> buttons()
{
    return {
        ButtonModel{"MIC/INST",
                    Instrument,
                    QStringLiteral("Button/MicInstrIsChecked"),
                    QStringLiteral("switchMicInstruction 1 1"),
                    QStringLiteral("switchMicInstruction 1 0"),
                    {QStringLiteral("Mic Instr Button Clicked true"),
                     QStringLiteral("Mic instruction switched for channel 1.")},
                    {QStringLiteral("Mic Instr Button Clicked false"),
                     QStringLiteral("Mic instruction switched for channel 1.")}},
        padButton("20dB", Pad, QStringLiteral("Button/Mic20dBIsChecked"), 1),
        phantomButton("48V", Phantom, QStringLiteral("Button/Mic48VIsChecked"), 1),
        monitorButton("DIRECT", Direct, QStringLiteral("Button/MonitorMicIsChecked"), monitored),
        ButtonModel{"MUTE",
                    Mute,
                    QStringLiteral("Button/HeadphoneMuteIsChecked"),
                    QStringLiteral("sendMixerBlock gain[0]=0 gain[1]=0"),
                    QStringLiteral("sendMixerBlock gain[0]=0.1 gain[1]=0.1"),
                    {QStringLiteral("Headphone volume set to: 0"),
                     QStringLiteral("Headphone Mute Button Clicked: Mute ON")},
                    {QStringLiteral("Headphone volume set to: 0.1"),
                     QStringLiteral("Headphone Mute Button Clicked: Mute OFF")}},
        ButtonModel{"DIM",
                    Dim,
                    QStringLiteral("Button/HeadphoneDimIsChecked"),
                    QStringLiteral("sendMixerBlock gain[0]=0.01 gain[1]=0.01"),
                    QStringLiteral("sendMixerBlock gain[0]=0.1 gain[1]=0.1"),
                    {QStringLiteral("Headphone volume set to: 0.01"),
                     QStringLiteral("Headphone Dim Button Clicked: Dim ON")},
                    {QStringLiteral("Headphone volume set to: 0.1"),
                     QStringLiteral("Headphone Dim Button Clicked: Dim OFF")}}};
}

StateModel firstStart()
{
    return {{QStringLiteral("Button/MicInstrIsChecked=false"),
             QStringLiteral("Button/Mic20dBIsChecked=false"),
             QStringLiteral("Button/Mic48VIsChecked=false"),
             QStringLiteral("Button/MonitorMicIsChecked=false"), QStringLiteral("Dial/MicValue=0"),
             QStringLiteral("Dial/HeadphoneValue=-80"),
             QStringLiteral("Button/HeadphoneMuteIsChecked=false"),
             QStringLiteral("Button/HeadphoneDimIsChecked=false"),
             QStringLiteral("Dial/OtgToHpValue=0")},
            {QStringLiteral("open"), QStringLiteral("setOutVolume 1 100"),
             QStringLiteral("setOutVolume 2 100"), QStringLiteral("switchMicInstruction 1 0"),
             QStringLiteral("setMic20dB 1 0"), QStringLiteral("setMic48V 1 0"),
             firstBlock({}, pairs), QStringLiteral("setMicVolume 1 0"),
             QStringLiteral("sendMixerBlock gain[0]=0 gain[1]=0"), sameBlock, sameBlock,
             QStringLiteral("sendMixerBlock (64,2)=1 (65,3)=1")}};
}

// Not in the order in which the panel writes, nor in that of the alphabet.
QStringList beyond()
{
    return {QStringLiteral("Dial/OtgToHpValue=7"),
            QStringLiteral("Dial/MicValue=50"),
            QStringLiteral("Button/HeadphoneDimIsChecked=true"),
            QStringLiteral("Button/MicInstrIsChecked=true"),
            QStringLiteral("Button/Mic48VIsChecked=true"),
            QStringLiteral("Button/Mic20dBIsChecked=false"),
            QStringLiteral("Button/MonitorMicIsChecked=true"),
            QStringLiteral("Button/HeadphoneMuteIsChecked=false"),
            QStringLiteral("Dial/HeadphoneValue=-81")};
}

StateModel clamped()
{
    return {{QStringLiteral("Dial/OtgToHpValue=6"), QStringLiteral("Dial/MicValue=42"),
             QStringLiteral("Button/HeadphoneDimIsChecked=true"),
             QStringLiteral("Button/MicInstrIsChecked=true"),
             QStringLiteral("Button/Mic48VIsChecked=true"),
             QStringLiteral("Button/Mic20dBIsChecked=false"),
             QStringLiteral("Button/MonitorMicIsChecked=true"),
             QStringLiteral("Button/HeadphoneMuteIsChecked=false"),
             QStringLiteral("Dial/HeadphoneValue=-80")},
            {QStringLiteral("open"), QStringLiteral("setOutVolume 1 100"),
             QStringLiteral("setOutVolume 2 100"), QStringLiteral("switchMicInstruction 1 1"),
             QStringLiteral("setMic20dB 1 0"), QStringLiteral("setMic48V 1 1"),
             firstBlock(diagonal(64, 0, 2), pairs), QStringLiteral("setMicVolume 1 84"),
             QStringLiteral("sendMixerBlock gain[0]=0 gain[1]=0"), sameBlock, sameBlock,
             QStringLiteral("sendMixerBlock (64,2)=1.99526231497 (65,3)=1.99526231497")}};
}

QStringList replayed()
{
    return {QStringLiteral("open"),
            QStringLiteral("setOutVolume 1 100"),
            QStringLiteral("setOutVolume 2 100"),
            QStringLiteral("switchMicInstruction 1 1"),
            QStringLiteral("setMic20dB 1 1"),
            QStringLiteral("setMic48V 1 1"),
            firstBlock(diagonal(64, 0, 2), pairs),
            QStringLiteral("setMicVolume 1 40"),
            QStringLiteral("sendMixerBlock gain[0]=0.1 gain[1]=0.1"),
            sameBlock,
            QStringLiteral("sendMixerBlock gain[0]=0.01 gain[1]=0.01"),
            QStringLiteral("sendMixerBlock (64,2)=0.01 (65,3)=0.01")};
}

MixerModel rx1Model()
{
    return {.name = QStringLiteral("rx1"),
            .knobs = knobs(),
            .buttons = buttons(),
            .first = firstStart(),
            .beyond = beyond(),
            .clamped = clamped(),
            .pressed = {Instrument, Pad, Phantom, Direct, Dim},
            .notches = {20, 60, -40},
            .replayed = replayed(),
            // The phone is shown as the mean of two levels.
            .levels = {{{minus6Db, minus6Db, 0, 2 * minus20Db}, {Gain}},
                       {{minus20Db, minus20Db, minus6Db, minus20Db}, {Phone}},
                       {{minus20Db, minus20Db, minus20Db, minus6Db}, {Phone}}}};
}

QByteArray packet(const char *hexBegin)
{
    return QByteArray::fromHex(hexBegin).leftJustified(37, '\0');
}

} // namespace

/// The RX1 panel in the running program.
class tst_Rx1 : public MixerPanelTest
{
    Q_OBJECT

public:
    tst_Rx1()
        : MixerPanelTest(rx1Model())
    { }

private slots:
    void theFirstStartSendsThesePackets();
    void theFirstStartBringsTheEngineUp();
    void typedTextsAreReadAsNumbers();
    void muteWinsOverDimAndBothComeBack();
};

void tst_Rx1::theFirstStartSendsThesePackets()
{
    QVERIFY(start());
    QVERIFY(plug(QStringLiteral("rx1")));
    QList<QByteArray> packets;
    const QList<RecordEntry> entries = entriesBesides(QStringLiteral("setOutVolume"));
    for (const RecordEntry &entry : entries) {
        if (!entry.bytes().isEmpty())
            packets << entry.bytes();
    }
    QCOMPARE(packets,
             QList<QByteArray>({packet("01030002016400"), packet("01030002026400"),
                                packet("01640000010000"), packet("015a0000010000"),
                                packet("015b0000010000"), packet("01070002010000")}));
}

void tst_Rx1::theFirstStartBringsTheEngineUp()
{
    QVERIFY(start());
    QVERIFY(plug(QStringLiteral("rx1")));
    QVERIFY(log().waitFor(QStringLiteral("设置初始化完成")));
    QCOMPARE(sentBesides(QStringLiteral("setWdmChannelCount")),
             QStringList({QStringLiteral("open"), QStringLiteral("getBufferSize"),
                          QStringLiteral("getUsbLatency"), QStringLiteral("stopAudio"),
                          QStringLiteral("setBufferSize 192"), QStringLiteral("restartAudio"),
                          QStringLiteral("getSampleRate"), QStringLiteral("stopAudio"),
                          QStringLiteral("setSampleRate 44100"),
                          QStringLiteral("setWdmChannelCount 4"), QStringLiteral("setOtgOff"),
                          QStringLiteral("setOtgOn"), QStringLiteral("initAudio")}));
    QCOMPARE(sentBesides(QStringLiteral("getFirmwareVersion")),
             QStringList({QStringLiteral("open"), QStringLiteral("getDevicePid"),
                          QStringLiteral("getFirmwareVersion"), QStringLiteral("close")}));
    QCOMPARE(lane().setting(QStringLiteral("setting.ini"), QStringLiteral("Audio/BufferSize")),
             QVariant(QStringLiteral("192")));
}

void tst_Rx1::typedTextsAreReadAsNumbers()
{
    struct Typing {
        QString text;
        int value;
    };
    QVERIFY(showStoredPanel());
    const QPoint gain = knob(Gain);
    // Above the maximum, and with letters alone, which change nothing.
    for (const Typing &typing :
         {Typing{QStringLiteral("12"), 12}, Typing{QStringLiteral("7dB"), 7},
          Typing{QStringLiteral("99"), 42}, Typing{QStringLiteral("loud"), 42}}) {
        QVERIFY(pointer().doubleClick(gain));
        QVERIFY(pointer().type(typing.text));
        compareSent({});
        QVERIFY(pointer().key(QStringLiteral("Return")));
        compareSent({QStringLiteral("setMicVolume 1 %1").arg(2 * typing.value)});
        QVERIFY(waitForSaved(QStringLiteral("Dial/MicValue"), QString::number(typing.value)));
    }
}

void tst_Rx1::muteWinsOverDimAndBothComeBack()
{
    QVERIFY(showStoredPanel());
    for (const Buttons which : {Dim, Mute, Dim, Dim, Mute, Dim})
        QVERIFY(pointer().click(button(which)));
    compareSent({QStringLiteral("sendMixerBlock gain[0]=0.01 gain[1]=0.01"), sameBlock,
                 QStringLiteral("sendMixerBlock gain[0]=0 gain[1]=0"), sameBlock, sameBlock,
                 sameBlock, sameBlock, sameBlock,
                 QStringLiteral("sendMixerBlock gain[0]=0.01 gain[1]=0.01"), sameBlock,
                 QStringLiteral("sendMixerBlock gain[0]=0.1 gain[1]=0.1"), sameBlock});
    QVERIFY(waitForSaved(QStringLiteral("Dial/HeadphoneValue"), QStringLiteral("-20")));
}

QTEST_GUILESS_MAIN(tst_Rx1)
#include "tst_rx1.moc"
