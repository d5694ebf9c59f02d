#include "mixerpaneltest.h"

#include <QTest>

namespace {

// The rows of the matrix that hold a stereo pair.
const QList<int> pairs{96, 100, 128, 130, 132};
// After every control, on this model alone.
const QString saved = QStringLiteral("控件状态已保存到配置文件");

enum Knobs { Gain1, Gain2, Speaker, PhoneToSpeaker, Headphone, PhoneToHeadphone };
enum Buttons {
    Pad1,
    Phantom1,
    Direct1,
    Pad2,
    Phantom2,
    Direct2,
    SpeakerMute,
    SpeakerDim,
    HeadphoneMute,
    HeadphoneDim
};

/// Where direct monitoring takes a microphone: its column, in the rows of all four output channels.
QStringList monitored(int column)
{
    QStringList entries;
    for (const int row : {64, 65, 68, 69})
        entries << QStringLiteral("(%1,%2)").arg(row).arg(column);
    return entries;
}

KnobModel thenSaved(KnobModel knob)
{
    knob.logs << saved;
    return knob;
}

ButtonModel thenSaved(ButtonModel button)
{
    button.logsOn << saved;
    button.logsOff << saved;
    return button;
}

QList<KnobModel> knobs()
{
    return {thenSaved(gainKnob("MIC1 gain", Gain1, QStringLiteral("Dial/Mic1Value"), 56, 1)),
            thenSaved(gainKnob("MIC2 gain", Gain2, QStringLiteral("Dial/Mic2Value"), 56, 2)),
            KnobModel{"speaker volume",
                      Speaker,
                      QStringLiteral("Dial/SpeakerValue"),
                      -80,
                      6,
                      -20,
                      QStringLiteral("sendMixerBlock gain[0]={gain} gain[1]={gain}"),
                      {QStringLiteral("Speaker Knob value changed: {db}"),
                       QStringLiteral("Speaker volume set to: {db}"), saved}},
            KnobModel{"phone to speaker",
                      PhoneToSpeaker,
                      QStringLiteral("Dial/OtgToSPValue"),
                      -80,
                      6,
                      -20,
                      QStringLiteral("sendMixerBlock (64,2)={gain} (65,3)={gain}"),
                      {QStringLiteral("OTG to SP volume set to: {gain}"), saved}},
            KnobModel{"headphone volume",
                      Headphone,
                      QStringLiteral("Dial/HeadphoneValue"),
                      -80,
                      6,
                      -20,
                      QStringLiteral("sendMixerBlock gain[4]={gain} gain[5]={gain}"),
                      {QStringLiteral("Headphone Knob value changed: {db}"),
                       QStringLiteral("Headphone volume set to: {db}"), saved}},
            KnobModel{"phone to headphone",
                      PhoneToHeadphone,
                      QStringLiteral("Dial/OtgToHpValue"),
                      -80,
                      6,
                      -20,
                      QStringLiteral("sendMixerBlock (68,2)={gain} (69,3)={gain}"),
                      {QStringLiteral("OTG to HP volume set to: {gain}"), saved}}};
}

QList<ButtonModel> buttons()
{
    return {thenSaved(padButton("MIC1 20dB", Pad1, QStringLiteral("Button/Mic120dBIsChecked"), 1)),
            thenSaved(
                phantomButton("MIC1 48V", Phantom1, QStringLiteral("Button/Mic148VIsChecked"), 1)),
            thenSaved(monitorButton("MIC1 DIRECT", Direct1,
                                    QStringLiteral("Button/MonitorMic1IsChecked"), monitored(0))),
            thenSaved(padButton("MIC2 20dB", Pad2, QStringLiteral("Button/Mic220dBIsChecked"), 2)),
            thenSaved(
                phantomButton("MIC2 48V", Phantom2, QStringLiteral("Button/Mic248VIsChecked"), 2)),
            thenSaved(monitorButton("MIC2 DIRECT", Direct2,
                                    QStringLiteral("Button/MonitorMic2IsChecked"), monitored(1))),
            ButtonModel{"speaker MUTE",
                        SpeakerMute,
                        QStringLiteral("Button/SpeakerMuteIsChecked"),
                        QStringLiteral("sendMixerBlock gain[0]=0 gain[1]=0"),
                        QStringLiteral("sendMixerBlock gain[0]=0.1 gain[1]=0.1"),
                        {QStringLiteral("Speaker Knob value changed: -80"),
                         QStringLiteral("Speaker volume set to: -80"), saved,
                         QStringLiteral("Speaker Mute Button Clicked: Mute ON"), saved},
                        {QStringLiteral("Speaker Knob value changed: -20"),
                         QStringLiteral("Speaker volume set to: -20"), saved,
                         QStringLiteral("Speaker Mute Button Clicked: Mute OFF"), saved}},
            ButtonModel{"speaker DIM",
                        SpeakerDim,
                        QStringLiteral("Button/SpeakerDimIsChecked"),
                        QStringLiteral("sendMixerBlock gain[0]=0.01 gain[1]=0.01"),
                        QStringLiteral("sendMixerBlock gain[0]=0.1 gain[1]=0.1"),
                        {QStringLiteral("Speaker Knob value changed: -20"),
                         QStringLiteral("Speaker volume set to: -40"), saved, saved},
                        {QStringLiteral("Speaker Knob value changed: -20"),
                         QStringLiteral("Speaker volume set to: -20"), saved, saved}},
            ButtonModel{"headphone MUTE",
                        HeadphoneMute,
                        QStringLiteral("Button/HeadphoneMuteIsChecked"),
                        QStringLiteral("sendMixerBlock gain[4]=0 gain[5]=0"),
                        QStringLiteral("sendMixerBlock gain[4]=0.1 gain[5]=0.1"),
                        {QStringLiteral("Headphone Knob value changed: -20"),
                         QStringLiteral("Headphone volume set to: -80"), saved, saved},
                        {QStringLiteral("Headphone Knob value changed: -20"),
                         QStringLiteral("Headphone volume set to: -20"), saved, saved}},
            ButtonModel{"headphone DIM",
                        HeadphoneDim,
                        QStringLiteral("Button/HeadphoneDimIsChecked"),
                        QStringLiteral("sendMixerBlock gain[4]=0.01 gain[5]=0.01"),
                        QStringLiteral("sendMixerBlock gain[4]=0.1 gain[5]=0.1"),
                        {QStringLiteral("Headphone Knob value changed: -20"),
                         QStringLiteral("Headphone volume set to: -40"), saved, saved},
                        {QStringLiteral("Headphone Knob value changed: -20"),
                         QStringLiteral("Headphone volume set to: -20"), saved, saved}}};
}

StateModel firstStart()
{
    return {{QStringLiteral("Button/Mic120dBIsChecked=false"),
             QStringLiteral("Button/Mic148VIsChecked=false"),
             QStringLiteral("Button/MonitorMic1IsChecked=false"),
             QStringLiteral("Dial/Mic1Value=0"), QStringLiteral("Dial/Mic2Value=0"),
             QStringLiteral("Button/Mic220dBIsChecked=false"),
             QStringLiteral("Button/Mic248VIsChecked=false"),
             QStringLiteral("Button/MonitorMic2IsChecked=false"),
             QStringLiteral("Dial/SpeakerValue=-80"),
             QStringLiteral("Button/SpeakerMuteIsChecked=false"),
             QStringLiteral("Button/SpeakerDimIsChecked=false"),
             QStringLiteral("Dial/HeadphoneValue=-80"),
             QStringLiteral("Button/HeadphoneMuteIsChecked=false"),
             QStringLiteral("Button/HeadphoneDimIsChecked=false"),
             QStringLiteral("Dial/OtgToHpValue=0"), QStringLiteral("Dial/OtgToSPValue=0")},
            {QStringLiteral("open"),
             QStringLiteral("setOutVolume 1 100"),
             QStringLiteral("setOutVolume 2 100"),
             QStringLiteral("setOutVolume 5 100"),
             QStringLiteral("setOutVolume 6 100"),
             QStringLiteral("setMic20dB 1 0"),
             QStringLiteral("setMic48V 1 0"),
             firstBlock({}, pairs),
             QStringLiteral("setMicVolume 1 0"),
             QStringLiteral("setMicVolume 2 0"),
             QStringLiteral("setMic20dB 2 0"),
             QStringLiteral("setMic48V 2 0"),
             sameBlock,
             QStringLiteral("sendMixerBlock gain[0]=0 gain[1]=0"),
             sameBlock,
             sameBlock,
             QStringLiteral("sendMixerBlock gain[4]=0 gain[5]=0"),
             sameBlock,
             sameBlock,
             QStringLiteral("sendMixerBlock (68,2)=1 (69,3)=1"),
             QStringLiteral("sendMixerBlock (64,2)=1 (65,3)=1")}};
}

// Not in the order in which the panel writes, nor in that of the alphabet.
QStringList beyond()
{
    return {QStringLiteral("Dial/OtgToSPValue=-100"),
            QStringLiteral("Dial/OtgToHpValue=7"),
            QStringLiteral("Dial/HeadphoneValue=-81"),
            QStringLiteral("Dial/SpeakerValue=1000"),
            QStringLiteral("Dial/Mic2Value=57"),
            QStringLiteral("Dial/Mic1Value=-1"),
            QStringLiteral("Button/SpeakerDimIsChecked=true"),
            QStringLiteral("Button/HeadphoneMuteIsChecked=true"),
            QStringLiteral("Button/HeadphoneDimIsChecked=false"),
            QStringLiteral("Button/SpeakerMuteIsChecked=false"),
            QStringLiteral("Button/MonitorMic2IsChecked=true"),
            QStringLiteral("Button/Mic248VIsChecked=false"),
            QStringLiteral("Button/Mic220dBIsChecked=true"),
            QStringLiteral("Button/MonitorMic1IsChecked=true"),
            QStringLiteral("Button/Mic148VIsChecked=true"),
            QStringLiteral("Button/Mic120dBIsChecked=false")};
}

StateModel clamped()
{
    return {{QStringLiteral("Dial/OtgToSPValue=-80"), QStringLiteral("Dial/OtgToHpValue=6"),
             QStringLiteral("Dial/HeadphoneValue=-80"), QStringLiteral("Dial/SpeakerValue=6"),
             QStringLiteral("Dial/Mic2Value=56"), QStringLiteral("Dial/Mic1Value=0"),
             QStringLiteral("Button/SpeakerDimIsChecked=true"),
             QStringLiteral("Button/HeadphoneMuteIsChecked=true"),
             QStringLiteral("Button/HeadphoneDimIsChecked=false"),
             QStringLiteral("Button/SpeakerMuteIsChecked=false"),
             QStringLiteral("Button/MonitorMic2IsChecked=true"),
             QStringLiteral("Button/Mic248VIsChecked=false"),
             QStringLiteral("Button/Mic220dBIsChecked=true"),
             QStringLiteral("Button/MonitorMic1IsChecked=true"),
             QStringLiteral("Button/Mic148VIsChecked=true"),
             QStringLiteral("Button/Mic120dBIsChecked=false")},
            {QStringLiteral("open"),
             QStringLiteral("setOutVolume 1 100"),
             QStringLiteral("setOutVolume 2 100"),
             QStringLiteral("setOutVolume 5 100"),
             QStringLiteral("setOutVolume 6 100"),
             QStringLiteral("setMic20dB 1 0"),
             QStringLiteral("setMic48V 1 1"),
             firstBlock(QStringLiteral(" (64,0)=1 (65,0)=1 (68,0)=1 (69,0)=1"), pairs),
             QStringLiteral("setMicVolume 1 0"),
             QStringLiteral("setMicVolume 2 112"),
             QStringLiteral("setMic20dB 2 1"),
             QStringLiteral("setMic48V 2 0"),
             QStringLiteral("sendMixerBlock (64,1)=1 (65,1)=1 (68,1)=1 (69,1)=1"),
             QStringLiteral("sendMixerBlock gain[0]=1.99526231497 gain[1]=1.99526231497"),
             sameBlock,
             QStringLiteral("sendMixerBlock gain[0]=0.199526231497 gain[1]=0.199526231497"),
             QStringLiteral("sendMixerBlock gain[4]=0 gain[5]=0"),
             sameBlock,
             sameBlock,
             QStringLiteral("sendMixerBlock (68,2)=1.99526231497 (69,3)=1.99526231497"),
             sameBlock}};
}

QStringList replayed()
{
    return {QStringLiteral("open"),
            QStringLiteral("setOutVolume 1 100"),
            QStringLiteral("setOutVolume 2 100"),
            QStringLiteral("setOutVolume 5 100"),
            QStringLiteral("setOutVolume 6 100"),
            QStringLiteral("setMic20dB 1 1"),
            QStringLiteral("setMic48V 1 0"),
            firstBlock({}, pairs),
            QStringLiteral("setMicVolume 1 14"),
            QStringLiteral("setMicVolume 2 18"),
            QStringLiteral("setMic20dB 2 0"),
            QStringLiteral("setMic48V 2 1"),
            QStringLiteral("sendMixerBlock (64,1)=1 (65,1)=1 (68,1)=1 (69,1)=1"),
            QStringLiteral("sendMixerBlock gain[0]=0.1 gain[1]=0.1"),
            sameBlock,
            QStringLiteral("sendMixerBlock gain[0]=0.01 gain[1]=0.01"),
            QStringLiteral("sendMixerBlock gain[4]=0.01 gain[5]=0.01"),
            QStringLiteral("sendMixerBlock gain[4]=0 gain[5]=0"),
            sameBlock,
            QStringLiteral("sendMixerBlock (68,2)=1.41253754462 (69,3)=1.41253754462"),
            QStringLiteral("sendMixerBlock (64,2)=0.1 (65,3)=0.1")};
}

MixerModel rx2Model()
{
    return {.name = QStringLiteral("rx2"),
            .knobs = knobs(),
            .buttons = buttons(),
            .first = firstStart(),
            .beyond = beyond(),
            .clamped = clamped(),
            .pressed = {Pad1, Phantom2, Direct2, SpeakerDim, HeadphoneMute},
            .notches = {7, 9, 60, -20, 40, 3},
            .replayed = replayed(),
            // The phone is shown as the mean of two levels.
            .levels = {
                {{minus6Db, minus20Db, 0, 2 * minus20Db}, {Gain1}},
                {{minus20Db, minus6Db, minus20Db, minus20Db}, {Gain2}},
                {{minus20Db, minus20Db, minus6Db, minus20Db}, {PhoneToSpeaker, PhoneToHeadphone}},
                {{minus20Db, minus20Db, minus20Db, minus6Db}, {PhoneToSpeaker, PhoneToHeadphone}}}};
}

} // namespace

/// The RX2 panel in the running program.
class tst_Rx2 : public MixerPanelTest
{
    Q_OBJECT

public:
    tst_Rx2()
        : MixerPanelTest(rx2Model())
    { }

private slots:
    void mutingOneOutputLeavesTheOtherAlone();
};

void tst_Rx2::mutingOneOutputLeavesTheOtherAlone()
{
    QVERIFY(showStoredPanel());
    for (const Buttons which : {SpeakerMute, HeadphoneDim, SpeakerDim, SpeakerMute})
        QVERIFY(pointer().click(button(which)));
    compareSent({QStringLiteral("sendMixerBlock gain[0]=0 gain[1]=0"), sameBlock,
                 QStringLiteral("sendMixerBlock gain[4]=0.01 gain[5]=0.01"), sameBlock, sameBlock,
                 sameBlock, QStringLiteral("sendMixerBlock gain[0]=0.01 gain[1]=0.01"), sameBlock});
    QVERIFY(waitForSaved(QStringLiteral("Dial/SpeakerValue"), QStringLiteral("-20")));
    QVERIFY(waitForSaved(QStringLiteral("Dial/HeadphoneValue"), QStringLiteral("-20")));
}

QTEST_GUILESS_MAIN(tst_Rx2)
#include "tst_rx2.moc"
