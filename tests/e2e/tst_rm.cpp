#include "mixerpaneltest.h"

#include <QTest>

namespace {

// The rows of the matrix that hold a stereo pair.
const QList<int> pairs{96, 128, 130};

enum Knobs { Gain, Headphone };
enum Buttons { Direct, Mute, Dim };

// The phone reaches the headphone without a knob.
const QString phoneAlone = diagonal(64, 2, 2);
const QString phoneAndMonitor = QStringLiteral(" (64,0)=1 (64,2)=1 (65,1)=1 (65,3)=1");

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
                      {}}};
}

QList<ButtonModel> buttons()
{
    return {
        monitorButton("DIRECT", Direct, QStringLiteral("Button/MonitorMicIsChecked"), monitored),
        ButtonModel{"MUTE",
                    Mute,
                    QStringLiteral("Button/HeadphoneMuteIsChecked"),
                    QStringLiteral("sendMixerBlock gain[0]=0 gain[1]=0"),
                    QStringLiteral("sendMixerBlock gain[0]=0.1 gain[1]=0.1"),
                    {QStringLiteral("Headphone Mute Button Clicked: Mute ON")},
                    {QStringLiteral("Headphone Mute Button Clicked: Mute OFF")}},
        ButtonModel{"DIM",
                    Dim,
                    QStringLiteral("Button/HeadphoneDimIsChecked"),
                    QStringLiteral("sendMixerBlock gain[0]=0.01 gain[1]=0.01"),
                    QStringLiteral("sendMixerBlock gain[0]=0.1 gain[1]=0.1"),
                    {QStringLiteral("Headphone Dim Button Clicked: Dim ON")},
                    {QStringLiteral("Headphone Dim Button Clicked: Dim OFF")}}};
}

StateModel firstStart()
{
    return {{QStringLiteral("Button/MonitorMicIsChecked=false"), QStringLiteral("Dial/MicValue=0"),
             QStringLiteral("Dial/HeadphoneValue=-80"),
             QStringLiteral("Button/HeadphoneMuteIsChecked=false"),
             QStringLiteral("Button/HeadphoneDimIsChecked=false")},
            {QStringLiteral("open"), QStringLiteral("setOutVolume 1 100"),
             QStringLiteral("setOutVolume 2 100"), firstBlock(phoneAlone, pairs),
             QStringLiteral("setMicVolume 1 0"),
             QStringLiteral("sendMixerBlock gain[0]=0 gain[1]=0"), sameBlock, sameBlock}};
}

// Not in the order in which the panel writes, nor in that of the alphabet.
QStringList beyond()
{
    return {QStringLiteral("Dial/MicValue=43"), QStringLiteral("Dial/HeadphoneValue=7"),
            QStringLiteral("Button/HeadphoneDimIsChecked=true"),
            QStringLiteral("Button/MonitorMicIsChecked=true"),
            QStringLiteral("Button/HeadphoneMuteIsChecked=false")};
}

StateModel clamped()
{
    return {{QStringLiteral("Dial/MicValue=42"), QStringLiteral("Dial/HeadphoneValue=6"),
             QStringLiteral("Button/HeadphoneDimIsChecked=true"),
             QStringLiteral("Button/MonitorMicIsChecked=true"),
             QStringLiteral("Button/HeadphoneMuteIsChecked=false")},
            {QStringLiteral("open"), QStringLiteral("setOutVolume 1 100"),
             QStringLiteral("setOutVolume 2 100"), firstBlock(phoneAndMonitor, pairs),
             QStringLiteral("setMicVolume 1 84"),
             QStringLiteral("sendMixerBlock gain[0]=1.99526231497 gain[1]=1.99526231497"),
             sameBlock,
             QStringLiteral("sendMixerBlock gain[0]=0.199526231497 gain[1]=0.199526231497")}};
}

QStringList replayed()
{
    return {QStringLiteral("open"),
            QStringLiteral("setOutVolume 1 100"),
            QStringLiteral("setOutVolume 2 100"),
            firstBlock(phoneAndMonitor, pairs),
            QStringLiteral("setMicVolume 1 60"),
            QStringLiteral("sendMixerBlock gain[0]=0.1 gain[1]=0.1"),
            QStringLiteral("sendMixerBlock gain[0]=0 gain[1]=0"),
            sameBlock};
}

MixerModel rmModel()
{
    return {.name = QStringLiteral("rm"),
            .knobs = knobs(),
            .buttons = buttons(),
            .first = firstStart(),
            .beyond = beyond(),
            .clamped = clamped(),
            .pressed = {Direct, Mute},
            .notches = {30, 60},
            .replayed = replayed(),
            // The phone is shown as the mean of two levels.
            .levels = {{{minus6Db, minus20Db, minus20Db, minus20Db}, {Gain}}}};
}

} // namespace

/// The RM panel in the running program.
class tst_Rm : public MixerPanelTest
{
    Q_OBJECT

public:
    tst_Rm()
        : MixerPanelTest(rmModel())
    { }
};

QTEST_GUILESS_MAIN(tst_Rm)
#include "tst_rm.moc"
