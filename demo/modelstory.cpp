#include "modelstory.h"

namespace {

ControlUse knob(int index, int notches, const char *name, const char *key, int value,
                const char *sent)
{
    return {ControlUse::Knob,
            index,
            notches,
            QString::fromLatin1(name),
            QString::fromLatin1(key),
            value,
            QString::fromLatin1(sent)};
}

ControlUse button(int index, const char *name, const char *key, const char *sent)
{
    return {ControlUse::Button,
            index,
            0,
            QString::fromLatin1(name),
            QString::fromLatin1(key),
            true,
            QString::fromLatin1(sent)};
}

// Every command here changes something also when it is replayed, so that the record shows it:
// a panel begins with open outputs, and closes them from its saved state.
const QList<ModelStory> stories{
    {QStringLiteral("rx1"),
     QStringLiteral("Vesmora RX1 - FW: "),
     3,
     6,
     {knob(0, 12, "gain", "Dial/MicValue", 12, "setMicVolume 1 24"),
      knob(1, 60, "headphone volume", "Dial/HeadphoneValue", -20,
           "sendMixerBlock gain[0]=0.1 gain[1]=0.1"),
      button(2, "48V", "Button/Mic48VIsChecked", "setMic48V 1 1"),
      button(5, "headphone DIM", "Button/HeadphoneDimIsChecked",
             "sendMixerBlock gain[0]=0.01 gain[1]=0.01")}},
    {QStringLiteral("rx2"),
     QStringLiteral("Vesmora RX2 - FW: "),
     6,
     10,
     {knob(1, 20, "MIC2 gain", "Dial/Mic2Value", 20, "setMicVolume 2 40"),
      knob(2, 60, "speaker volume", "Dial/SpeakerValue", -20,
           "sendMixerBlock gain[0]=0.1 gain[1]=0.1"),
      knob(4, 40, "headphone volume", "Dial/HeadphoneValue", -40,
           "sendMixerBlock gain[4]=0.01 gain[5]=0.01"),
      button(4, "MIC2 48V", "Button/Mic248VIsChecked", "setMic48V 2 1"),
      button(7, "speaker DIM", "Button/SpeakerDimIsChecked",
             "sendMixerBlock gain[0]=0.01 gain[1]=0.01")}},
    {QStringLiteral("rm"),
     QStringLiteral("Vesmora RM - FW: "),
     2,
     3,
     {knob(0, 30, "gain", "Dial/MicValue", 30, "setMicVolume 1 60"),
      knob(1, 60, "headphone volume", "Dial/HeadphoneValue", -20,
           "sendMixerBlock gain[0]=0.1 gain[1]=0.1"),
      button(2, "headphone DIM", "Button/HeadphoneDimIsChecked",
             "sendMixerBlock gain[0]=0.01 gain[1]=0.01")}},
};

} // namespace

std::optional<ModelStory> modelStory(const QString &model)
{
    for (const ModelStory &story : stories) {
        if (story.model == model)
            return story;
    }
    return std::nullopt;
}
