#ifndef RM_H
#define RM_H

#include "devicepanel.h"

/// The mixer panel of the RM: one microphone input and one headphone output with direct monitoring.
/// The phone input is always heard at unity.
class rm : public DevicePanel
{
    Q_OBJECT

public:
    /// Connects to the device and brings it to the saved state.
    rm();

private:
    QLayout *inputColumn();
    QLayout *outputColumn();
    void restoreState();

    void setHeadphoneVolume(int db);

    Knob *m_gain = nullptr;
    StereoOutput m_headphone{.firstGain = 0};
    Button *m_direct = nullptr;
};

#endif
