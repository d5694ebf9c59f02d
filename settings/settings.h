#ifndef SETTINGS_H
#define SETTINGS_H

#include <QDialog>

#include <functional>

class PipeServer;
class QComboBox;
class QSettings;
class QVBoxLayout;
class VesmoraIoControl;

/// The dialog that sets up the driver's audio engine: buffer size, USB latency, sample rate and
/// safe mode. A choice takes effect at once, through the sequences in enginesequences.cpp, and is
/// kept in "setting.ini" when the driver accepted all of it. Outcomes go to the debug log alone.
class Settings : public QDialog
{
    Q_OBJECT

public:
    /// Builds the dialog, hidden, and starts listening to the ASIO driver.
    Settings();
    ~Settings() override;

    /// Opens the dialog's own connection to the driver, in place of an earlier one. Until there is
    /// one, choices in the dialog reach no driver and are not kept.
    bool createDevice();
    /// Loads the saved choices and brings the engine to them. Needs a device: see createDevice().
    void initSettings();
    /// Loads the saved choices into the combo boxes; each that changes runs its sequence at once.
    void loadSettings();
    /// Brings the dialog to the front, and has it stay there.
    void showFromPipe();
    /// Hides the dialog and tells the ASIO driver to pick up the choices.
    void notifyAsioReset();

    // The change sequences. Each takes the current text of its combo box to the driver and stops at
    // the first command that fails.
    void onBufferSizeChanged();
    void onUsbLatencyChanged();
    void onSampleRateChanged();
    void onSafeModeChanged();

    /// A device is yet to be brought to the saved choices.
    bool pendingInit = true;

private:
    using Handler = void (Settings::*)();

    void openSettings();
    void addHeading();
    QComboBox *addChoice(const QString &title, const QString &name, const QStringList &items,
                         Handler changed);
    void addOkButton();
    void listenToAsio();

    void save(const char *key, const QComboBox *choice);
    bool capUsbLatency(quint32 bufferSize);
    void startEngine();
    void cycleOtg(const std::function<void()> &completed);
    void after(int milliseconds, const std::function<void()> &step);

    QVBoxLayout *m_layout = nullptr;
    QComboBox *m_usbLatency = nullptr;
    QComboBox *m_bufferSize = nullptr;
    QComboBox *m_sampleRate = nullptr;
    QComboBox *m_safeMode = nullptr;
    QSettings *m_settings = nullptr;
    VesmoraIoControl *m_device = nullptr;
    PipeServer *m_pipeServer = nullptr;  ///< none of its own so far; the listener has one
    quint32 m_currentSampleRate = 44100; ///< Hz
};

#endif
