#ifndef MAINWINDOW_H
#define MAINWINDOW_H

#include <QMainWindow>

class QLabel;
class QTimer;
class QVBoxLayout;
class Settings;
class VesmoraIoControl;
struct DeviceModel;

/// The window that shows the mixer panel of the connected model, or a message while there is none.
///
/// It looks for a device once a second, hidden or not. While a device is shown it asks every 400 ms
/// whether it is still there; three failures in a row and the panel goes. Closing the window hides
/// it as long as there is a system tray to show it again.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit MainWindow(QWidget *parent = nullptr);
    /// Closes the presence connection.
    ~MainWindow() override;

    /// Connects the audio engine to each device found. Not owned; must be set before events run.
    Settings *settingsWindow = nullptr;

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    void detectDevice();
    void pollDevice();

    bool showDevice(VesmoraIoControl &probe);
    bool readTitle(VesmoraIoControl &probe, const DeviceModel &model);
    void startPolling();
    void loseDevice();
    void clearLayout();
    void showStatus(const QString &text);

    quint32 devicePid = 0; ///< last one read; 0 while there is no device
    QVBoxLayout *baseLayout = nullptr;
    QTimer *detectTimer = nullptr;
    QTimer *pollTimer = nullptr;
    VesmoraIoControl *meterDriver = nullptr; ///< open while a device is shown
    QLabel *statusLabel = nullptr;
    quint32 pidErrorCount = 0;
};

#endif
