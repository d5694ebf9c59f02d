// An icon in the tray and, as plain calls, whatever else the control panel has to do when it
// starts: be the only one, load its texts, build its dialog and its window, listen to the pipe and,
// a second later, look for a device.

#include "vesmoracontract.h"
#include "vesmorapipes.h"

#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QDir>
#include <QLabel>
#include <QMainWindow>
#include <QMenu>
#include <QPushButton>
#include <QSettings>
#include <QSharedMemory>
#include <QStandardPaths>
#include <QSystemSemaphore>
#include <QSystemTrayIcon>
#include <QThread>
#include <QTimer>
#include <QTranslator>
#include <QVBoxLayout>

#include <memory>

#include <windows.h>

namespace {

void addBox(QDialog &dialog, QVBoxLayout &layout, const QString &title, const QStringList &items)
{
    auto *label = new QLabel(title, &dialog);
    label->setAlignment(Qt::AlignCenter);
    label->setStyleSheet(QStringLiteral("font-size: 14px; color: #008888;"));
    layout.addWidget(label);
    auto *box = new QComboBox(&dialog);
    box->addItems(items);
    layout.addWidget(box);
}

void fill(QDialog &dialog)
{
    dialog.setWindowTitle(QStringLiteral("Settings"));
    dialog.setStyleSheet(QStringLiteral("QDialog { background-color: #2c313c; color: white; }"));
    auto *layout = new QVBoxLayout(&dialog);
    layout->setContentsMargins(40, 10, 40, 40);
    auto *heading = new QLabel(QStringLiteral("Settings"), &dialog);
    heading->setAlignment(Qt::AlignCenter);
    heading->setStyleSheet(QStringLiteral("font-size: 18px; font-weight: bold; color: #00FFFF;"));
    layout->addWidget(heading);
    addBox(dialog, *layout, QStringLiteral("Buffer Size"),
           {QStringLiteral("48"), QStringLiteral("64"), QStringLiteral("96"), QStringLiteral("128"),
            QStringLiteral("192"), QStringLiteral("256"), QStringLiteral("512"),
            QStringLiteral("1024")});
    addBox(dialog, *layout, QStringLiteral("USB Latency Size"),
           {QStringLiteral("8"), QStringLiteral("16"), QStringLiteral("24"), QStringLiteral("32")});
    addBox(dialog, *layout, QStringLiteral("Samplerate"),
           {QStringLiteral("44100"), QStringLiteral("48000")});
    addBox(dialog, *layout, QStringLiteral("Safe Mode"),
           {QStringLiteral("Disabled"), QStringLiteral("Enabled")});
    auto *ok = new QPushButton(QStringLiteral("OK"), &dialog);
    ok->setStyleSheet(QStringLiteral("background-color: #008888; color: white; font-size: 14px;"));
    layout->addWidget(ok, 0, Qt::AlignCenter);
}

void fill(QMainWindow &window)
{
    window.setWindowTitle(QStringLiteral("Vesmora Driver"));
    window.setStyleSheet(QStringLiteral("QMainWindow { background-color: #2c313c; }"));
    auto *content = new QWidget(&window);
    auto *layout = new QVBoxLayout(content);
    auto *label = new QLabel(QStringLiteral("声卡未连接！"), content);
    label->setStyleSheet(QStringLiteral("font-size: 12px; color: white;"));
    layout->addWidget(label);
    window.setCentralWidget(content);
}

void fill(QMenu &menu)
{
    menu.addAction(QStringLiteral("V20250930"))->setEnabled(false);
    menu.addAction(QStringLiteral("Quit"));
    menu.addSeparator();
    for (const char *text :
         {"Setup", "Main Window", "Upgrade Firmware", "Refresh Audio Device", "Win Sound Pannel"})
        menu.addAction(QLatin1String(text));
}

void listen()
{
    const HANDLE pipe = CreateNamedPipeW(VESMORA_WINDOW_PIPE, PIPE_ACCESS_DUPLEX,
                                         PIPE_TYPE_MESSAGE | PIPE_READMODE_MESSAGE | PIPE_WAIT,
                                         PIPE_UNLIMITED_INSTANCES, VESMORA_PIPE_BUFFER_SIZE,
                                         VESMORA_PIPE_BUFFER_SIZE, VESMORA_PIPE_TIMEOUT, nullptr);
    ConnectNamedPipe(pipe, nullptr);
}

void lookForDevice()
{
    for (int bus = 0; bus < VESMORA_BUS_COUNT; ++bus) {
        const QString path = QStringLiteral("\\\\.\\" VESMORA_BUS_NAME) + QString::number(bus);
        CreateFileW(path.toStdWString().c_str(), GENERIC_READ | GENERIC_WRITE,
                    FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr);
    }
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);

    QSystemSemaphore semaphore(QStringLiteral("VesmoraQtDriverSemaphore"), 1,
                               QSystemSemaphore::Open);
    QSharedMemory marker(QStringLiteral("VesmoraQtDriverSharedMemory"));
    semaphore.acquire();
    if (marker.attach(QSharedMemory::ReadWrite) || !marker.create(1, QSharedMemory::ReadWrite))
        return 1;
    semaphore.release(1);

    QTranslator translator;
    if (translator.load(QStringLiteral(VESMORA_TRANSLATION)))
        QCoreApplication::installTranslator(&translator);

    const QString folder = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    QDir().mkpath(folder);
    const QSettings settings(folder + QStringLiteral("/setting.ini"), QSettings::IniFormat);

    QDialog dialog;
    fill(dialog);
    const std::unique_ptr<QThread> listener(QThread::create(listen));
    listener->start();
    QMainWindow window;
    fill(window);
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &window, lookForDevice);
    timer.start(1000);

    QMenu menu;
    fill(menu);
    QSystemTrayIcon tray(QIcon(QStringLiteral(":/icon/icon.png")));
    tray.setContextMenu(&menu);
    tray.setVisible(true);
    return QApplication::exec();
}
