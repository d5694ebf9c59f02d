#include "mainwindow.h"

#include "models.h"
#include "settings.h"
#include "vesmoraiocontrol.h"

#include <QCloseEvent>
#include <QDebug>
#include <QLabel>
#include <QPixmap>
#include <QSystemTrayIcon>
#include <QTimer>
#include <QVBoxLayout>

using namespace std::chrono_literals;

namespace {

constexpr auto detectInterval = 1000ms;
constexpr auto pollInterval = 400ms;
constexpr quint32 pollFailuresUntilLost = 3;

constexpr char notConnected[] = QT_TRANSLATE_NOOP("MainWindow", "声卡未连接！");

/// The window's title: the firmware version's bytes take the places of %1 to %10.
QString titlePattern(const DeviceModel &model)
{
    return QLatin1String("Vesmora ") + QLatin1String(model.name)
        + QLatin1String(" - FW: %1%2%3%4%5%6%7%8%9%10");
}

/// The connection of one look for a device.
VesmoraIoControl *openProbe()
{
    auto *probe = new VesmoraIoControl;
    probe->openDevice();
    return probe;
}

} // namespace

MainWindow::MainWindow(QWidget *parent)
    : QMainWindow(parent)
{
    setCentralWidget(new QWidget(this));
    setWindowFlags(Qt::WindowMinimizeButtonHint | Qt::WindowCloseButtonHint);

    detectTimer = new QTimer(this);
    connect(detectTimer, &QTimer::timeout, this, &MainWindow::detectDevice);
    detectTimer->start(detectInterval);
    pollTimer = new QTimer(this);
    connect(pollTimer, &QTimer::timeout, this, &MainWindow::pollDevice);
    pollTimer->setInterval(pollInterval);

    setWindowTitle(QStringLiteral("Vesmora Driver"));
    setStyleSheet(QStringLiteral("QMainWindow { background-color: #2c313c; }"));
    setAttribute(Qt::WA_DeleteOnClose);
    const QPixmap icon(QStringLiteral(":/icon/icon.png"));
    if (!icon.isNull())
        setWindowIcon(icon);

    baseLayout = new QVBoxLayout(centralWidget());
    baseLayout->setAlignment(Qt::AlignCenter);
    // Untranslated here, translated when a device is lost.
    showStatus(QString::fromUtf8(notConnected));
}

MainWindow::~MainWindow()
{
    delete meterDriver;
}

void MainWindow::detectDevice()
{
    VesmoraIoControl *const probe = openProbe();
    probe->getDevicePid(devicePid);
    qDebug() << "Device PID:" << devicePid;
    // A look that ends early keeps its connection open: only one that finds nothing, or all,
    // releases it.
    if (devicePid == 0 || showDevice(*probe))
        delete probe;
}

/// Shows the panel of the device with the identifier read last, and starts to watch the device.
/// Returns false when it stopped half-way, with what it says about that on screen.
bool MainWindow::showDevice(VesmoraIoControl &probe)
{
    clearLayout();
    const DeviceModel *model = findModel(devicePid);
    if (!model) {
        qDebug() << "Unknown device PID:" << devicePid;
        showStatus(QStringLiteral("未知设备，请检查连接！"));
        return false;
    }
    if (!settingsWindow->createDevice()) {
        qDebug() << "Failed to connect to driver in settings window.";
        startPolling();
        return false;
    }
    settingsWindow->initSettings();

    QWidget *panel = model->createPanel();
    panel->setParent(centralWidget());
    baseLayout->addWidget(panel);
    qDebug("Adding %s widget to layout.", panel->metaObject()->className());
    update();

    if (!readTitle(probe, *model)) {
        qDebug() << "Failed to get firmware version.";
        showStatus(QStringLiteral("获取固件版本失败，请检查连接！"));
        return false;
    }
    qDebug() << "Device found with PID:" << devicePid;
    detectTimer->stop();
    startPolling();
    return true;
}

/// Makes the window's title of the model and its firmware version, a character a byte.
bool MainWindow::readTitle(VesmoraIoControl &probe, const DeviceModel &model)
{
    quint8 version[VESMORA_FIRMWARE_VERSION_LENGTH] = {};
    if (!probe.getFirmwareVersion(version, sizeof version))
        return false;
    QString title = titlePattern(model);
    for (const quint8 byte : version)
        title = title.arg(QLatin1Char(static_cast<char>(byte)));
    setWindowTitle(title);
    return true;
}

void MainWindow::startPolling()
{
    meterDriver = new VesmoraIoControl;
    meterDriver->openDevice();
    pollTimer->start();
}

void MainWindow::pollDevice()
{
    if (meterDriver->getDevicePid(devicePid)) {
        pidErrorCount = 0;
        return;
    }
    ++pidErrorCount;
    qDebug() << "Error reading device PID from driver, error count:" << pidErrorCount;
    if (pidErrorCount >= pollFailuresUntilLost)
        loseDevice();
}

/// Goes back to searching. The error count stays, so that a device which comes back and fails its
/// first poll goes again at once.
void MainWindow::loseDevice()
{
    pollTimer->stop();
    delete meterDriver;
    meterDriver = nullptr;
    qDebug() << "Meter driver handle deleted.";
    devicePid = 0;
    settingsWindow->pendingInit = true;
    clearLayout();
    qDebug() << "Cleared all widgets from base layout.";
    detectTimer->start();
    showStatus(tr(notConnected));
}

void MainWindow::clearLayout()
{
    while (QLayoutItem *item = baseLayout->takeAt(0)) {
        if (QWidget *widget = item->widget())
            widget->deleteLater();
        delete item;
    }
}

void MainWindow::showStatus(const QString &text)
{
    statusLabel = new QLabel(text, this);
    statusLabel->setStyleSheet(QStringLiteral("font-size: 12px; color: white;"));
    baseLayout->addWidget(statusLabel);
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    if (QSystemTrayIcon::isSystemTrayAvailable()) {
        hide();
        event->ignore();
        return;
    }
    // The window lives where start-up put it, which will destroy it: closing must not do so first.
    setAttribute(Qt::WA_DeleteOnClose, false);
    QMainWindow::closeEvent(event);
}
