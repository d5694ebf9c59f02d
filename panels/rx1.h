#ifndef RX1_H
#define RX1_H

#include "devicepanel.h"

/// The mixer panel of the RX1: one microphone or instrument input, one headphone output with direct
/// monitoring and the phone input.
class rx1 : public DevicePanel
{
    Q_OBJECT

public:
    /// Connects to the device and brings it to the saved state.
    rx1();

private:
    QLayout *inputColumn();
    QLayout *outputColumn();
    void restoreState();

    void setInstrument(bool on);
    void setHeadphoneVolume(int db);
    void setPhoneVolume(int db);

    Knob *m_gain = nullptr;
    Button *m_instrument = nullptr;
    Button *m_pad = nullptr;
    Button *m_phantom = nullptr;
    Button *m_direct = nullptr;
    StereoOutput m_headphone{.firstGain = 0};
    Knob *m_phone = nullptr;
};

#endif
