#include "mainwindow.h"
#include "settings.h"
#include "singleinstance.h"
#include "translation.h"
#include "trayicon.h"

#include <QApplication>
#include <QSharedMemory>
#include <QSystemSemaphore>
#include <QTranslator>

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);

    QSystemSemaphore semaphore(QStringLiteral("VesmoraQtDriverSemaphore"), 1,
                               QSystemSemaphore::Open);
    QSharedMemory marker(QStringLiteral("VesmoraQtDriverSharedMemory"));
    QTranslator translator;
    if (const auto exitCode = claimSingleInstance(semaphore, marker))
        return *exitCode;
    installTranslation(translator);

    const QPixmap icon(QStringLiteral(":/icon/icon.ico"));
    if (!icon.isNull())
        QApplication::setWindowIcon(QIcon(icon));

    Settings settings;
    MainWindow mainWindow;
    mainWindow.settingsWindow = &settings;
    settings.pendingInit = true;

    TrayIcon trayIcon;
    trayIcon.setMainWindow(&mainWindow);
    trayIcon.settingsWindow = &settings;
    trayIcon.setVisible(true);

    return QApplication::exec();
}
