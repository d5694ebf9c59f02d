#include "settings.h"

#include "asioreset.h"
#include "pipeserver.h"
#include "threadsettingspip.h"
#include "vesmoraiocontrol.h"

#include <QComboBox>
#include <QDebug>
#include <QDir>
#include <QLabel>
#include <QPixmap>
#include <QPushButton>
#include <QSettings>
#include <QStandardPaths>
#include <QVBoxLayout>

#include <new>

Settings::Settings()
    : QDialog(nullptr)
{
    qDebug() << "Settings dialog created.";
    setWindowTitle(QStringLiteral("Settings"));
    setStyleSheet(QStringLiteral("QDialog { background-color: #2c313c; color: white; }"));
    openSettings();

    m_layout = new QVBoxLayout(this);
    m_layout->setAlignment(Qt::AlignCenter);
    m_layout->setContentsMargins(40, 10, 40, 40);
    const QPixmap icon(QStringLiteral(":/icon/icon.png"));
    if (!icon.isNull())
        setWindowIcon(icon);

    addHeading();
    m_bufferSize = addChoice(tr("Buffer Size"), QStringLiteral("BufferSize"),
                             {"48", "64", "96", "128", "192", "256", "512", "1024"},
                             &Settings::onBufferSizeChanged);
    m_usbLatency = addChoice(tr("USB Latency Size"), QStringLiteral("UsbLatency"),
                             {"8", "16", "24", "32"}, &Settings::onUsbLatencyChanged);
    m_usbLatency->setCurrentIndex(0);
    m_sampleRate = addChoice(tr("Samplerate"), QStringLiteral("SampleRate"), {"44100", "48000"},
                             &Settings::onSampleRateChanged);
    m_safeMode = addChoice(tr("Safe Mode"), QStringLiteral("SafeMode"), {"Disabled", "Enabled"},
                           &Settings::onSafeModeChanged);
    m_layout->addSpacing(20);
    addOkButton();
    m_layout->addStretch(0);
    listenToAsio();
}

Settings::~Settings()
{
    delete m_settings;
    delete m_device;
    if (m_pipeServer)
        m_pipeServer->close();
    delete m_pipeServer;
    qDebug() << "Settings dialog closed and resources cleaned up.";
}

void Settings::openSettings()
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    QDir().mkpath(folder);
    m_settings = new QSettings(folder + QStringLiteral("/setting.ini"), QSettings::IniFormat, this);
}

void Settings::addHeading()
{
    auto *heading = new QLabel(tr("Settings"));
    heading->setAlignment(Qt::AlignCenter);
    heading->setStyleSheet(QStringLiteral("font-size: 18px; font-weight: bold; color: #00FFFF;"));
    m_layout->addWidget(heading);
}

QComboBox *Settings::addChoice(const QString &title, const QString &name, const QStringList &items,
                               Handler changed)
{
    auto *label = new QLabel(title);
    label->setAlignment(Qt::AlignCenter);
    label->setStyleSheet(QStringLiteral("font-size: 14px; color: #008888;"));
    m_layout->addWidget(label);

    auto *choice = new QComboBox;
    choice->setObjectName(name);
    choice->addItems(items);
    // Connected before any value is loaded: loading one that differs is a change like any other.
    connect(choice, &QComboBox::currentIndexChanged, this, changed);
    m_layout->addWidget(choice);
    return choice;
}

void Settings::addOkButton()
{
    auto *ok = new QPushButton(QStringLiteral("OK"));
    ok->setObjectName(QStringLiteral("Ok"));
    ok->setStyleSheet(QStringLiteral("background-color: #008888; color: white; font-size: 14px;"));
    connect(ok, &QPushButton::clicked, this, &Settings::notifyAsioReset);
    m_layout->addWidget(ok, 0, Qt::AlignCenter);
}

void Settings::listenToAsio()
{
    auto *listener = new ThreadSettingsPip(this);
    connect(listener, &ThreadSettingsPip::progressUpdated, this, &Settings::showFromPipe);
    listener->start(QThread::InheritPriority);
}

bool Settings::createDevice()
{
    delete m_device;
    m_device = new (std::nothrow) VesmoraIoControl;
    if (!m_device) {
        qDebug() << "Failed to create VesmoraIoControl instance.";
        return false;
    }
    if (m_device->openDevice())
        return true;
    // The first model's text, whatever the model.
    qDebug() << "Failed to create device in rx1.";
    return false;
}

void Settings::loadSettings()
{
    const auto load = [this](const QString &key, const QString &fallback, QComboBox *choice) {
        choice->setCurrentText(m_settings->value(key, fallback).toString());
    };
    load(QStringLiteral("USB/LatencySize"), QStringLiteral("8"), m_usbLatency);
    load(QStringLiteral("Audio/BufferSize"), QStringLiteral("192"), m_bufferSize);
    load(QStringLiteral("USB/SlowMode"), QStringLiteral("Disabled"), m_safeMode);
    load(QStringLiteral("Audio/SampleRate"), QStringLiteral("44100"), m_sampleRate);
    qDebug() << "已从配置文件加载控件状态";
}

void Settings::initSettings()
{
    loadSettings();
    qDebug() << "加载控件状态完成";
    qDebug() << "当前音频采样率为：" << m_device->getSampleRate();

    const QString rate = m_sampleRate->currentText();
    if (rate == QLatin1String("44100")) {
        m_currentSampleRate = 44100;
        startEngine();
    } else if (rate == QLatin1String("48000")) {
        // Loading this rate has changed the box, and so brought the engine to it.
        m_currentSampleRate = 48000;
    } else {
        qDebug() << "未知的音频采样率选项：" << rate;
    }
}

void Settings::showFromPipe()
{
    setWindowFlag(Qt::WindowStaysOnTopHint, true);
    show();
    if (isMinimized())
        showNormal();
    else
        show();
    raise();
    activateWindow();
    qDebug() << "Received signal from pipe thread to show settings window.";
}

void Settings::notifyAsioReset()
{
    hide();
    sendAsioReset();
}

void Settings::save(const char *key, const QComboBox *choice)
{
    m_settings->setValue(QLatin1String(key), choice->currentText());
    m_settings->sync();
}
