#ifndef TRAYICON_H
#define TRAYICON_H

#include <QSystemTrayIcon>

class MainWindow;
class QMenu;
class Settings;

/// The program's icon in the notification area: its menu and its only way to quit.
///
/// From its construction on the application outlives its last closed window.
class TrayIcon : public QSystemTrayIcon
{
    Q_OBJECT

public:
    explicit TrayIcon(QObject *parent = nullptr);
    ~TrayIcon() override;

    /// Sets the window that a click on the icon shows. Not owned; null is ignored.
    void setMainWindow(MainWindow *window);

private:
    MainWindow *mainWindow = nullptr;

public:
    /// The dialog that "Setup" shows. Not owned.
    Settings *settingsWindow = nullptr;

private slots:
    void showSettings();
    void clickCallback(QSystemTrayIcon::ActivationReason reason);
    void openSoundPannel();
    void refreshDeviceList();

private:
    QMenu *createMenu();
    void showMainWindow();
    void quit();
    void upgradeFirmware();
};

#endif
