#include "goldenstart.h"

namespace {

constexpr int packetLength = 37;

// Several things on a line stand between bars. "gain[0..95]=1" is every output gain, "(saving)"
// what is logged when a control was saved. The bytes of a packet that are not written are zero.
const QMap<QString, QString> texts{{"rx1 first", R"(
sent   open | setOutVolume 1 100 | setOutVolume 2 100 | switchMicInstruction 1 0 | setMic20dB 1 0 | setMic48V 1 0
sent   sendMixerBlock (4,0)=1 (5,1)=1 (6,2)=1 (7,3)=1 (8,4)=1 (9,5)=1 (10,6)=1 (11,7)=1 (96,0)=1 (97,1)=1 (128,0)=1 (129,1)=1 (130,0)=1 (131,1)=1 (160,0)=1 (161,1)=1 (162,2)=1 (163,3)=1 (164,4)=1 (165,5)=1 (166,6)=1 (167,7)=1 gain[0..95]=1
sent   setMicVolume 1 0 | sendMixerBlock gain[0]=0 gain[1]=0 | sendMixerBlock | sendMixerBlock | sendMixerBlock (64,2)=1 (65,3)=1
packet 01030002016400 | 01030002026400 | 01640000010000 | 015a0000010000 | 015b0000010000 | 01070002010000
logged Mic Instr Button Clicked false | Mic instruction switched for channel 1. | Mic 20dB Button Clicked false | Mic 20dB switched for channel 1.
logged Mic 48V Button Clicked false | Mic 48V switched for channel 1. | Monitor Mic set to: 0 | Mic volume set to: 0
logged Headphone volume set to: 0 | Headphone volume set to: 0 | Headphone Mute Button Clicked: Mute OFF | Headphone volume set to: 0 | Headphone Dim Button Clicked: Dim OFF
logged OTG to HP volume set to: 1 | 已从配置文件加载控件状态
saved  Button/MicInstrIsChecked=false | Button/Mic20dBIsChecked=false | Button/Mic48VIsChecked=false | Button/MonitorMicIsChecked=false | Dial/MicValue=0
saved  Dial/HeadphoneValue=-80 | Button/HeadphoneMuteIsChecked=false | Button/HeadphoneDimIsChecked=false | Dial/OtgToHpValue=0
)"},
                                   {"rx1 replay", R"(
sent   open | setOutVolume 1 100 | setOutVolume 2 100 | switchMicInstruction 1 1 | setMic20dB 1 1 | setMic48V 1 1
sent   sendMixerBlock (4,0)=1 (5,1)=1 (6,2)=1 (7,3)=1 (8,4)=1 (9,5)=1 (10,6)=1 (11,7)=1 (64,0)=1 (65,1)=1 (96,0)=1 (97,1)=1 (128,0)=1 (129,1)=1 (130,0)=1 (131,1)=1 (160,0)=1 (161,1)=1 (162,2)=1 (163,3)=1 (164,4)=1 (165,5)=1 (166,6)=1 (167,7)=1 gain[0..95]=1
sent   setMicVolume 1 40 | sendMixerBlock gain[0]=0.1 gain[1]=0.1 | sendMixerBlock gain[0]=0 gain[1]=0 | sendMixerBlock | sendMixerBlock (64,2)=0.01 (65,3)=0.01
packet 01030002016400 | 01030002026400 | 01640001010000 | 015a0001010000 | 015b0001010000 | 01070002012800
logged Mic Instr Button Clicked true | Mic instruction switched for channel 1. | Mic 20dB Button Clicked true | Mic 20dB switched for channel 1.
logged Mic 48V Button Clicked true | Mic 48V switched for channel 1. | Monitor Mic set to: 1 | Mic volume set to: 20
logged Headphone volume set to: 0.1 | Headphone volume set to: 0 | Headphone Mute Button Clicked: Mute ON | Headphone volume set to: 0 | Headphone Dim Button Clicked: Dim ON
logged OTG to HP volume set to: 0.01 | 已从配置文件加载控件状态
saved  Button/HeadphoneDimIsChecked=true | Button/HeadphoneMuteIsChecked=true | Button/Mic20dBIsChecked=true | Button/Mic48VIsChecked=true
saved  Button/MicInstrIsChecked=true | Button/MonitorMicIsChecked=true | Dial/HeadphoneValue=-20 | Dial/MicValue=20 | Dial/OtgToHpValue=-40
)"},
                                   {"rx2 first", R"(
sent   open | setOutVolume 1 100 | setOutVolume 2 100 | setOutVolume 5 100 | setOutVolume 6 100 | setMic20dB 1 0 | setMic48V 1 0
sent   sendMixerBlock (4,0)=1 (5,1)=1 (6,2)=1 (7,3)=1 (8,4)=1 (9,5)=1 (10,6)=1 (11,7)=1 (96,0)=1 (97,1)=1 (100,0)=1 (101,1)=1 (128,0)=1 (129,1)=1 (130,0)=1 (131,1)=1 (132,0)=1 (133,1)=1 (160,0)=1 (161,1)=1 (162,2)=1 (163,3)=1 (164,4)=1 (165,5)=1 (166,6)=1 (167,7)=1 gain[0..95]=1
sent   setMicVolume 1 0 | setMicVolume 2 0 | setMic20dB 2 0 | setMic48V 2 0 | sendMixerBlock
sent   sendMixerBlock gain[0]=0 gain[1]=0 | sendMixerBlock | sendMixerBlock | sendMixerBlock gain[4]=0 gain[5]=0 | sendMixerBlock | sendMixerBlock | sendMixerBlock (68,2)=1 (69,3)=1 | sendMixerBlock (64,2)=1 (65,3)=1
packet 01030002016400 | 01030002026400 | 01030002056400 | 01030002066400 | 015a0000010000 | 015b0000010000 | 01070002010000 | 01070002020000 | 015a0000020000 | 015b0000020000
logged Mic 20dB Button Clicked false | Mic 20dB switched for channel 1. | (saving) | Mic 48V Button Clicked false | Mic 48V switched for channel 1. | (saving)
logged Monitor Mic set to: 0 | (saving) | Mic volume set to: 0 | (saving) | Mic volume set to: 0 | (saving)
logged Mic 20dB Button Clicked false | Mic 20dB switched for channel 1. | (saving) | Mic 48V Button Clicked false | Mic 48V switched for channel 1. | (saving) | Monitor Mic set to: 0 | (saving)
logged Speaker Knob value changed: -80 | Speaker volume set to: -80 | (saving) | Speaker Knob value changed: -80 | Speaker volume set to: -80 | (saving) | Speaker Mute Button Clicked: Mute OFF | (saving) | Speaker Knob value changed: -80 | Speaker volume set to: -80 | (saving) | (saving)
logged Headphone Knob value changed: -80 | Headphone volume set to: -80 | (saving) | Headphone Knob value changed: -80 | Headphone volume set to: -80 | (saving) | (saving) | Headphone Knob value changed: -80 | Headphone volume set to: -80 | (saving) | (saving)
logged OTG to HP volume set to: 1 | (saving) | OTG to SP volume set to: 1 | (saving) | 已从配置文件加载控件状态
saved  Button/Mic120dBIsChecked=false | Button/Mic148VIsChecked=false | Button/MonitorMic1IsChecked=false | Dial/Mic1Value=0 | Dial/Mic2Value=0 | Button/Mic220dBIsChecked=false | Button/Mic248VIsChecked=false
saved  Button/MonitorMic2IsChecked=false | Dial/SpeakerValue=-80 | Button/SpeakerMuteIsChecked=false | Button/SpeakerDimIsChecked=false | Dial/HeadphoneValue=-80 | Button/HeadphoneMuteIsChecked=false
saved  Button/HeadphoneDimIsChecked=false | Dial/OtgToHpValue=0 | Dial/OtgToSPValue=0
)"},
                                   {"rx2 replay", R"(
sent   open | setOutVolume 1 100 | setOutVolume 2 100 | setOutVolume 5 100 | setOutVolume 6 100 | setMic20dB 1 1 | setMic48V 1 0
sent   sendMixerBlock (4,0)=1 (5,1)=1 (6,2)=1 (7,3)=1 (8,4)=1 (9,5)=1 (10,6)=1 (11,7)=1 (64,0)=1 (65,0)=1 (68,0)=1 (69,0)=1 (96,0)=1 (97,1)=1 (100,0)=1 (101,1)=1 (128,0)=1 (129,1)=1 (130,0)=1 (131,1)=1 (132,0)=1 (133,1)=1 (160,0)=1 (161,1)=1 (162,2)=1 (163,3)=1 (164,4)=1 (165,5)=1 (166,6)=1 (167,7)=1 gain[0..95]=1
sent   setMicVolume 1 20 | setMicVolume 2 112 | setMic20dB 2 0 | setMic48V 2 1 | sendMixerBlock (64,1)=1 (65,1)=1 (68,1)=1 (69,1)=1
sent   sendMixerBlock gain[0]=0.1 gain[1]=0.1 | sendMixerBlock gain[0]=0 gain[1]=0 | sendMixerBlock | sendMixerBlock | sendMixerBlock | sendMixerBlock gain[4]=0.1 gain[5]=0.1 | sendMixerBlock | sendMixerBlock (64,2)=0.01 (65,3)=0.01
packet 01030002016400 | 01030002026400 | 01030002056400 | 01030002066400 | 015a0001010000 | 015b0000010000 | 01070002011400 | 01070002027000 | 015a0000020000 | 015b0001020000
logged Mic 20dB Button Clicked true | Mic 20dB switched for channel 1. | (saving) | Mic 48V Button Clicked false | Mic 48V switched for channel 1. | (saving)
logged Monitor Mic set to: 1 | (saving) | Mic volume set to: 10 | (saving) | Mic volume set to: 56 | (saving)
logged Mic 20dB Button Clicked false | Mic 20dB switched for channel 1. | (saving) | Mic 48V Button Clicked true | Mic 48V switched for channel 1. | (saving) | Monitor Mic set to: 1 | (saving)
logged Speaker Knob value changed: -20 | Speaker volume set to: -20 | (saving) | Speaker Knob value changed: -80 | Speaker volume set to: -80 | (saving) | Speaker Mute Button Clicked: Mute ON | (saving) | Speaker Knob value changed: -20 | Speaker volume set to: -80 | (saving) | (saving)
logged Headphone Knob value changed: 0 | Headphone volume set to: 0 | (saving) | Headphone Knob value changed: 0 | Headphone volume set to: 0 | (saving) | (saving) | Headphone Knob value changed: 0 | Headphone volume set to: -20 | (saving) | (saving)
logged OTG to HP volume set to: 0 | (saving) | OTG to SP volume set to: 0.01 | (saving) | 已从配置文件加载控件状态
saved  Button/HeadphoneDimIsChecked=true | Button/HeadphoneMuteIsChecked=false | Button/Mic120dBIsChecked=true | Button/Mic148VIsChecked=false | Button/Mic220dBIsChecked=false | Button/Mic248VIsChecked=true
saved  Button/MonitorMic1IsChecked=true | Button/MonitorMic2IsChecked=true | Button/SpeakerDimIsChecked=false | Button/SpeakerMuteIsChecked=true | Dial/HeadphoneValue=0 | Dial/Mic1Value=10 | Dial/Mic2Value=56
saved  Dial/OtgToHpValue=-80 | Dial/OtgToSPValue=-40 | Dial/SpeakerValue=-20
)"},
                                   {"rm first", R"(
sent   open | setOutVolume 1 100 | setOutVolume 2 100
sent   sendMixerBlock (4,0)=1 (5,1)=1 (6,2)=1 (7,3)=1 (8,4)=1 (9,5)=1 (10,6)=1 (11,7)=1 (64,2)=1 (65,3)=1 (96,0)=1 (97,1)=1 (128,0)=1 (129,1)=1 (130,0)=1 (131,1)=1 (160,0)=1 (161,1)=1 (162,2)=1 (163,3)=1 (164,4)=1 (165,5)=1 (166,6)=1 (167,7)=1 gain[0..95]=1
sent   setMicVolume 1 0 | sendMixerBlock gain[0]=0 gain[1]=0 | sendMixerBlock | sendMixerBlock
packet 01030002016400 | 01030002026400 | 01070002010000
logged Monitor Mic set to: 0 | Mic volume set to: 0 | Headphone Mute Button Clicked: Mute OFF | Headphone Dim Button Clicked: Dim OFF | 已从配置文件加载控件状态
saved  Button/MonitorMicIsChecked=false | Dial/MicValue=0 | Dial/HeadphoneValue=-80 | Button/HeadphoneMuteIsChecked=false | Button/HeadphoneDimIsChecked=false
)"},
                                   {"rm replay", R"(
sent   open | setOutVolume 1 100 | setOutVolume 2 100
sent   sendMixerBlock (4,0)=1 (5,1)=1 (6,2)=1 (7,3)=1 (8,4)=1 (9,5)=1 (10,6)=1 (11,7)=1 (64,0)=1 (64,2)=1 (65,1)=1 (65,3)=1 (96,0)=1 (97,1)=1 (128,0)=1 (129,1)=1 (130,0)=1 (131,1)=1 (160,0)=1 (161,1)=1 (162,2)=1 (163,3)=1 (164,4)=1 (165,5)=1 (166,6)=1 (167,7)=1 gain[0..95]=1
sent   setMicVolume 1 84 | sendMixerBlock | sendMixerBlock gain[0]=0 gain[1]=0 | sendMixerBlock
packet 01030002016400 | 01030002026400 | 01070002015400
logged Monitor Mic set to: 1 | Mic volume set to: 42 | Headphone Mute Button Clicked: Mute ON | Headphone Dim Button Clicked: Dim ON | 已从配置文件加载控件状态
saved  Button/HeadphoneDimIsChecked=true | Button/HeadphoneMuteIsChecked=true | Button/MonitorMicIsChecked=true | Dial/HeadphoneValue=0 | Dial/MicValue=42
)"}};

GoldenStart golden(const QString &name)
{
    if (!texts.contains(name))
        qFatal("The start \"%s\" is not written out", qPrintable(name));
    QString gains;
    for (int output = 0; output < 96; ++output)
        gains += QString(" gain[%1]=1").arg(output);
    QString text = texts.value(name);
    text.replace(" gain[0..95]=1", gains).replace("(saving)", "控件状态已保存到配置文件");
    GoldenStart start;
    const QStringList lines = text.split('\n', Qt::SkipEmptyParts);
    for (const QString &line : lines) {
        const QStringList things = line.section(' ', 1, -1, QString::SectionSkipEmpty).split(" | ");
        if (line.startsWith("sent"))
            start.requests += things;
        else if (line.startsWith("logged"))
            start.log += things;
        else if (line.startsWith("saved"))
            start.saved += things;
        else
            for (const QString &bytes : things)
                start.packets
                    << QByteArray::fromHex(bytes.toLatin1()).leftJustified(packetLength, '\0');
    }
    return start;
}

} // namespace

QMap<QString, QString> GoldenStart::values() const
{
    QMap<QString, QString> values;
    for (const QString &entry : saved)
        values.insert(entry.section('=', 0, 0), entry.section('=', 1));
    return values;
}

GoldenStart goldenFirstStart(const QString &model)
{
    return golden(model + " first");
}

GoldenStart goldenReplay(const QString &model)
{
    return golden(model + " replay");
}
