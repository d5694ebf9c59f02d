#include "settings.h"

#include "asioreset.h"
#include "threadsettingspip.h"

#include <QComboBox>
#include <QDebug>
#include <QDir>
#include <QLabel>
#include <QPixmap>
#include <QPushButton>
#include <QSettings>
#include <QSignalBlocker>
#include <QStandardPaths>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

QList<Settings::Field> Settings::describedFields()
{
    return {
        {.title = QT_TR_NOOP("Buffer Size"),
         .name = "BufferSize",
         .key = "Audio/BufferSize",
         .absent = QStringLiteral("192"),
         .items = {48, 64, 96, 128, 192, 256, 512, 1024},
         .changed = &Settings::onBufferSizeChanged,
         .apply = &AudioEngine::setBufferSize,
         .saved = "音频缓冲区大小设置已保存："},
        {.title = QT_TR_NOOP("USB Latency Size"),
         .name = "UsbLatency",
         .key = "USB/LatencySize",
         .absent = QStringLiteral("8"),
         .items = {8, 16, 24, 32},
         .changed = &Settings::onUsbLatencyChanged,
         .apply = &AudioEngine::setUsbLatency,
         .saved = "USB延迟大小设置已保存："},
        {.title = QT_TR_NOOP("Samplerate"),
         .name = "SampleRate",
         .key = "Audio/SampleRate",
         .absent = QStringLiteral("44100"),
         .items = {44100, 48000},
         .changed = &Settings::onSampleRateChanged,
         .apply = &AudioEngine::setSampleRate,
         .saved = "音频采样率设置已保存："},
        {.title = QT_TR_NOOP("Safe Mode"),
         .name = "SafeMode",
         .key = "USB/SlowMode",
         .absent = QStringLiteral("Disabled"),
         .items = {{QStringLiteral("Disabled"), 0}, {QStringLiteral("Enabled"), 1}},
         .changed = &Settings::onSafeModeChanged,
         .apply = &AudioEngine::setSafeMode,
         .saved = "USB慢速模式设置已保存："},
    };
}

Settings::Settings()
    : QDialog(nullptr)
{
    qDebug() << "Settings dialog created.";
    setWindowTitle(QStringLiteral("Settings"));
    setStyleSheet(QStringLiteral("QDialog { background-color: #2c313c; color: white; }"));
    openSettings();
    m_engine = new AudioEngine(this);

    m_layout = new QVBoxLayout(this);
    m_layout->setAlignment(Qt::AlignCenter);
    m_layout->setContentsMargins(40, 10, 40, 40);
    const QPixmap icon(QStringLiteral(":/icon/icon.png"));
    if (!icon.isNull())
        setWindowIcon(icon);

    addHeading();
    for (Field &field : m_fields)
        addField(field);
    m_layout->addSpacing(20);
    addOkButton();
    m_layout->addStretch(0);
    connect(m_engine, &AudioEngine::usbLatencyTooHigh, this,
            [this](quint32 frames) { choose(UsbLatency, QString::number(frames)); });
    listenToAsio();
}

Settings::~Settings()
{
    delete m_settings;
    delete m_engine;
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
    auto *heading = new QLabel(tr("Settings"), this);
    heading->setAlignment(Qt::AlignCenter);
    heading->setStyleSheet(QStringLiteral("font-size: 18px; font-weight: bold; color: #00FFFF;"));
    m_layout->addWidget(heading);
}

void Settings::addField(Field &field)
{
    auto *label = new QLabel(tr(field.title), this);
    label->setAlignment(Qt::AlignCenter);
    label->setStyleSheet(QStringLiteral("font-size: 14px; color: #008888;"));
    m_layout->addWidget(label);

    // Ours from its first moment: adopted later, it would build its hidden list at once.
    field.box = new QComboBox(this);
    field.box->setObjectName(QLatin1String(field.name));
    for (const Item &item : std::as_const(field.items))
        field.box->addItem(item.text);
    // Connected before any value is loaded: loading one that differs is a change like any other.
    connect(field.box, &QComboBox::currentIndexChanged, this, field.changed);
    m_layout->addWidget(field.box);
}

void Settings::addOkButton()
{
    auto *ok = new QPushButton(QStringLiteral("OK"), this);
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
    if (!m_engine->openDevice())
        return false;
    if (!std::exchange(m_wasConnected, true))
        showFirstItems();
    return true;
}

/// Without a change sequence.
void Settings::showFirstItems()
{
    for (const Field &field : std::as_const(m_fields)) {
        const QSignalBlocker unnoticed(field.box);
        field.box->setCurrentIndex(0);
    }
}

void Settings::loadSettings()
{
    // The latency before the buffer size, which has the last word on it.
    constexpr FieldId order[] = {UsbLatency, BufferSize, SafeMode, SampleRate};
    static_assert(std::size(order) == FieldCount);
    for (const FieldId id : order) {
        const Field &field = m_fields.at(id);
        choose(id, m_settings->value(QLatin1String(field.key), field.absent).toString());
    }
    qDebug() << "已从配置文件加载控件状态";
}

void Settings::initSettings()
{
    loadSettings();
    qDebug() << "加载控件状态完成";
    qDebug() << "当前音频采样率为：" << m_engine->sampleRate();

    // With the first connection, loading any other rate has changed the box, and so brought the
    // engine to it.
    const AudioEngine::Choice rate = chosen(SampleRate);
    const quint32 first = m_fields.at(SampleRate).items.constFirst().value;
    if (!rate.value)
        qDebug() << "未知的音频采样率选项：" << rate.text;
    else if (*rate.value == first)
        m_engine->start(first);
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

void Settings::onBufferSizeChanged()
{
    apply(BufferSize);
}

void Settings::onUsbLatencyChanged()
{
    apply(UsbLatency);
}

void Settings::onSampleRateChanged()
{
    apply(SampleRate);
}

void Settings::onSafeModeChanged()
{
    apply(SafeMode);
}

/// What the box says, and what that means if it is one of the field's items.
AudioEngine::Choice Settings::chosen(FieldId id) const
{
    const Field &field = m_fields.at(id);
    const QString text = field.box->currentText();
    const auto item = std::find_if(field.items.begin(), field.items.end(),
                                   [&](const Item &candidate) { return candidate.text == text; });
    if (item == field.items.end())
        return {text, {}};
    return {text, item->value};
}

/// A text that is no item leaves the box as it is.
void Settings::choose(FieldId id, const QString &item)
{
    m_fields.at(id).box->setCurrentText(item);
}

void Settings::apply(FieldId id)
{
    const Field &field = m_fields.at(id);
    const AudioEngine::Choice choice = chosen(id);
    if (!(m_engine->*field.apply)(choice))
        return;
    m_settings->setValue(QLatin1String(field.key), choice.text);
    m_settings->sync();
    qDebug() << field.saved << choice.text;
}
