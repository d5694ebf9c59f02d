#include "trayicon.h"

#include "mainwindow.h"
#include "settings.h"
#include "vesmoraiocontrol.h"

#include <QAction>
#include <QCoreApplication>
#include <QDebug>
#include <QGuiApplication>
#include <QIcon>
#include <QMenu>
#include <QMessageBox>
#include <QPixmap>
#include <QProcess>

#include <initializer_list>

#include <windows.h>

namespace {

constexpr int shellRestartTimeout = 5000; // milliseconds
/// ShellExecute answers a number above this one when it succeeded.
constexpr qintptr shellExecuteFailure = 32;

void warn(const QString &title, const QString &text)
{
    QMessageBox::warning(nullptr, title, text, QMessageBox::Ok);
}

void bringUp(QWidget *window)
{
    window->show();
    window->raise();
    window->activateWindow();
}

} // namespace

TrayIcon::TrayIcon(QObject *parent)
    : QSystemTrayIcon(parent)
{
    // By way of the pixmap, which the windows share: an icon would decode the file for itself.
    setIcon(QPixmap(QStringLiteral(":/icon/icon.png")));
    setContextMenu(createMenu());
    QGuiApplication::setQuitOnLastWindowClosed(false);
    connect(this, &QSystemTrayIcon::activated, this, &TrayIcon::clickCallback);
}

TrayIcon::~TrayIcon()
{
    delete contextMenu();
}

QMenu *TrayIcon::createMenu()
{
    auto *showMain = new QAction(tr("Main Window"), this);
    auto *setup = new QAction(tr("Setup"), this);
    auto *quit = new QAction(tr("Quit"), this);
    auto *upgrade = new QAction(tr("Upgrade Firmware"), this);
    auto *soundPannel = new QAction(tr("Win Sound Pannel"), this);
    auto *refresh = new QAction(tr("Refresh Audio Device"), this);
    auto *version = new QAction(QStringLiteral("V20250930"), this);
    version->setEnabled(false);

    auto *menu = new QMenu;
    menu->addActions({version, quit});
    menu->addSeparator();
    menu->addActions({setup, showMain, upgrade, refresh, soundPannel});
    menu->addSeparator();
    menu->addSeparator();

    connect(showMain, &QAction::triggered, this, &TrayIcon::showMainWindow);
    connect(setup, &QAction::triggered, this, &TrayIcon::showSettings);
    connect(quit, &QAction::triggered, this, &TrayIcon::quit);
    connect(soundPannel, &QAction::triggered, this, &TrayIcon::openSoundPannel);
    connect(refresh, &QAction::triggered, this, &TrayIcon::refreshDeviceList);
    connect(upgrade, &QAction::triggered, this, &TrayIcon::upgradeFirmware);
    return menu;
}

void TrayIcon::setMainWindow(MainWindow *window)
{
    if (window)
        mainWindow = window;
}

void TrayIcon::clickCallback(QSystemTrayIcon::ActivationReason reason)
{
    if (reason == DoubleClick || reason == Trigger)
        showMainWindow();
}

void TrayIcon::showMainWindow()
{
    if (mainWindow)
        bringUp(mainWindow);
    else
        warn(QStringLiteral("警告"), QStringLiteral("主窗口未设置，请先设置主窗口。"));
}

void TrayIcon::showSettings()
{
    if (settingsWindow)
        bringUp(settingsWindow);
    else
        warn(QStringLiteral("警告"), QStringLiteral("设置窗口未设置，请先设置设置窗口。"));
}

/// Hides the windows first. The application asks every visible one whether it may close, and the
/// main window says no while there is a tray.
void TrayIcon::quit()
{
    for (QWidget *window : std::initializer_list<QWidget *>{mainWindow, settingsWindow}) {
        if (window)
            window->hide();
    }
    QCoreApplication::quit();
}

void TrayIcon::upgradeFirmware()
{
    auto *device = new VesmoraIoControl;
    if (!device->openDevice()) {
        // The first model's text, whatever the model. The unopened object is left as it is.
        qDebug() << "Failed to create device in rx1.";
        return;
    }
    device->upgradeFirmware();
    delete device;
}

void TrayIcon::openSoundPannel()
{
    const auto result = reinterpret_cast<qintptr>(
        ShellExecuteA(nullptr, "open", "control.exe", "mmsys.cpl", nullptr, SW_SHOWNORMAL));
    if (result > shellExecuteFailure)
        qDebug() << "声音设置面板已打开。";
    else
        warn(QStringLiteral("错误"), QStringLiteral("无法打开声音设置面板，请检查系统设置。"));
}

void TrayIcon::refreshDeviceList()
{
    QProcess shell;
    shell.start(QStringLiteral("cmd.exe"),
                {QStringLiteral("/c"),
                 QStringLiteral("taskkill /f /im explorer.exe && start explorer.exe")},
                QIODevice::ReadWrite);
    if (!shell.waitForFinished(shellRestartTimeout)) {
        qWarning() << "重启资源管理器超时";
        qWarning() << "错误信息:" << shell.errorString();
    }
    if (shell.exitCode() != 0) {
        qWarning() << "命令执行失败，退出代码:" << shell.exitCode();
        qWarning() << "输出:" << shell.readAllStandardOutput();
        qWarning() << "错误输出:" << shell.readAllStandardError();
    }
    // Said on every path, whatever happened above.
    qDebug() << "资源管理器已成功重启";
}
