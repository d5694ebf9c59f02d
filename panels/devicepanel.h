#ifndef DEVICEPANEL_H
#define DEVICEPANEL_H

#include "button.h"
#include "knob.h"
#include "levelmeters.h"
#include "microphone.h"
#include "mixermatrix.h"
#include "stereooutput.h"
#include "vesmoracontract.h"

#include <QDebug>
#include <QWidget>

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <span>

class QBoxLayout;
class QLabel;
class QLayout;
class QSettings;
class VesmoraIoControl;

/// What the mixer panels of all models share: the connection, the mixer block, the settings file,
/// the level meters and the step from a control to the device and the file.
///
/// A model's class has the model's name in lower case; log and settings file take theirs from it:
/// "Failed to create device in rx1.", "rx1.ini". Its constructor connects to the device, lays out
/// the controls and replays their saved state. A panel whose device fails stays an empty widget.
///
/// A control's object name is its identity: a knob "Mic" is kept under "Dial/MicValue" (int, dB), a
/// button "Mic48V" under "Button/Mic48VIsChecked" (bool). Every action goes to the device and then
/// to the file, whether or not the device accepted it. Failures are logged and nothing else.
class DevicePanel : public QWidget
{
    Q_OBJECT

public:
    /// Closes the device, then the settings file.
    ~DevicePanel() override;

protected:
    /// Whether every write to the settings file is logged.
    enum class Saves { Silent, Logged };
    explicit DevicePanel(Saves saves = Saves::Silent);

    /// Opens the panel's own connection, sets the device's own volume of each of @p outputs
    /// (1-based channels), in order, and opens the settings file in the program's data folder. Logs
    /// what failed and returns false when there is no device or the last volume was not set; the
    /// other volumes' answers do not count.
    bool connectToDevice(std::initializer_list<std::uint8_t> outputs);
    /// Lays out @p inputs and @p outputs, columns from left to right, with a line between the two.
    void layOutColumns(std::initializer_list<QLayout *> inputs,
                       std::initializer_list<QLayout *> outputs);
    /// Refreshes the meters every 500 ms from now on.
    void startMeters();

    using KnobAction = std::function<void(int db)>;
    using ButtonAction = std::function<void(bool on)>;

    /// What the switches of an output log, after the lines of its volume; null is nothing.
    struct SwitchLog {
        const char *muteOn = nullptr;
        const char *muteOff = nullptr;
        const char *dimOn = nullptr;
        const char *dimOff = nullptr;
    };
    /// For the headphone of a model that has no other output.
    static const SwitchLog headphoneSwitchLog;

    // These place controls into a layout and connect each to its action. A control is saved after
    // its action has run.
    /// The microphone's gain, 0 to @p maximumDb, above its meter.
    Knob *addGain(QBoxLayout *column, const Microphone &mic, int maximumDb);
    /// The microphone's 20 dB pad, phantom power and direct monitoring over @p routes.
    Button *addPad(QBoxLayout *buttons, const Microphone &mic);
    Button *addPhantom(QBoxLayout *buttons, const Microphone &mic);
    Button *addMonitor(QBoxLayout *buttons, const Microphone &mic, const QString &text,
                       std::span<const Route> routes);
    /// Volume, mute and dim of one output; their names are made of @p name. All three come to
    /// @p setVolume, which sends the level and reports it, and then save the volume; mute and dim
    /// themselves follow.
    void addVolume(QBoxLayout *column, StereoOutput &output, const QString &name, QLabel *caption,
                   const SwitchLog &log, const KnobAction &setVolume);
    /// The phone input's volume, its meter and @p caption in @p readout beside it.
    Knob *addPhoneVolume(QBoxLayout *column, const QString &name, QBoxLayout *readout,
                         QLabel *caption, const KnobAction &action);
    /// Any other switch; returns @p button.
    Button *addButton(QBoxLayout *layout, Button *button, const ButtonAction &action);

    /// Sets a control from the settings file as if the user had done it, so that the device and the
    /// file receive it, too. @p initialDb holds when the file has no whole number for it; buttons
    /// are off unless the file says otherwise.
    void restore(Knob *knob, int initialDb);
    void restore(Button *button);
    /// Logs that all controls are restored.
    void finishRestore();

    /// Sends the level of @p db after mute and dim; returns whether the device took it.
    bool sendVolume(const StereoOutput &output, int db);
    /// Sends the linear @p gain of @p routes; returns whether the device took it.
    bool sendRoutes(std::span<const Route> routes, double gain);

    /// Logs @p success and @p value, or @p failure.
    template <typename Value>
    static void report(bool done, const char *success, const Value &value, const char *failure)
    {
        if (done)
            qDebug() << success << value;
        else
            qDebug() << failure;
    }
    static void report(bool done, const char *success, const char *failure);

    VesmoraIoControl &device() { return *m_device; }
    MixerBlock &mixer() { return m_mixer; }

private:
    bool openDevice();
    bool setOutputVolumes(std::initializer_list<std::uint8_t> channels);
    void openSettings();

    KnobAction bind(Knob *knob, const KnobAction &action);
    void addMeter(QBoxLayout *layout, LevelMeters::Source level);
    void setMicGain(std::uint8_t channel, int db);
    void setMicPad(std::uint8_t channel, bool on);
    void setMicPhantom(std::uint8_t channel, bool on);
    void setMonitor(std::span<const Route> routes, bool on);

    static QString keyOf(const Knob *knob);
    static QString keyOf(const Button *button);
    void save(const QString &key, const QVariant &value);

    const Saves m_saves;
    MixerBlock m_mixer{};
    LevelMeters m_meters;
    QSettings *m_settings = nullptr;
    VesmoraIoControl *m_device = nullptr;
};

#endif
