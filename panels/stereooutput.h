#ifndef STEREOOUTPUT_H
#define STEREOOUTPUT_H

class Button;
class Knob;

/// A headphone or speaker output: its volume knob with mute and dim.
struct StereoOutput {
    int firstGain; ///< index of its left output gain in MixerBlock; the right one follows
    Knob *volume = nullptr;
    Button *mute = nullptr;
    Button *dim = nullptr;
    bool muted = false;
    bool dimmed = false;

    /// The level in dB that @p db comes to: mute wins over dim, dim is a fixed cut.
    int effectiveDb(int db) const { return muted ? silenceDb : dimmed ? db - dimCutDb : db; }

    static constexpr int silenceDb = -80;
    static constexpr int dimCutDb = 20;
};

#endif
