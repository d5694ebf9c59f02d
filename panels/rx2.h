#ifndef RX2_H
#define RX2_H

#include "devicepanel.h"

/// The mixer panel of the RX2: two microphone inputs, a speaker and a headphone output, each output
/// with the phone input on a knob of its own.
class rx2 : public DevicePanel
{
    Q_OBJECT

public:
    /// Connects to the device and brings it to the saved state.
    rx2();

private:
    struct Input {
        Microphone mic;
        std::span<const Route> monitorRoutes; ///< to both sides of both outputs
        Knob *gain = nullptr;
        Button *pad = nullptr;
        Button *phantom = nullptr;
        Button *direct = nullptr;
    };
    /// The texts with which an output logs its changes.
    struct OutputLog {
        const char *volumeCalled;
        const char *volumeSet;
        const char *volumeFailed;
        const char *phoneSet;
        SwitchLog switches = {};
    };
    struct Output {
        StereoOutput level;
        std::span<const Route> phoneRoutes; ///< from the phone input
        OutputLog log;
        Knob *phone = nullptr;
    };

    QLayout *inputColumn(Input &input, const QString &title);
    QLayout *speakerColumn();
    QLayout *headphoneColumn();
    void addPhone(QBoxLayout *column, Output &output, const QString &name, const QString &text);
    void restoreState();

    void setVolume(const Output &output, int db);
    void setPhoneVolume(const Output &output, int db);

    Input m_mic1;
    Input m_mic2;
    Output m_headphone;
    Output m_speaker;
};

#endif
