#include "devicepanel.h"

#include "panelparts.h"
#include "vesmoraiocontrol.h"
#include "wholenumber.h"

#include <QDir>
#include <QHBoxLayout>
#include <QLabel>
#include <QSettings>
#include <QStandardPaths>
#include <QTimer>

#include <algorithm>
#include <limits>

using namespace std::chrono_literals;

namespace {

constexpr auto meterInterval = 500ms;
/// In the device's own units.
constexpr std::int16_t outputVolume = 100;
/// The device is sent a microphone's gain doubled.
constexpr int micStepsPerDb = 2;

/// The level in dB that a settings file holds, or @p initialDb where it holds none. Anything but a
/// whole number is none: what a damaged file says must not make headphones loud.
int savedLevel(const QVariant &saved, int initialDb)
{
    // As this program has just saved it; what is read from a file is text.
    if (saved.typeId() == QMetaType::Int)
        return saved.toInt();
    if (saved.typeId() != QMetaType::QString)
        return initialDb;
    using Bounds = std::numeric_limits<int>;
    const qint64 db = wholeNumber(saved.toString()).value_or(initialDb);
    return static_cast<int>(std::clamp<qint64>(db, Bounds::min(), Bounds::max()));
}

} // namespace

DevicePanel::DevicePanel(Saves saves)
    : m_saves(saves)
{ }

DevicePanel::~DevicePanel()
{
    // A knob whose number is being edited commits it when it is hidden, which is too late for us.
    const auto knobs = findChildren<Knob *>();
    for (Knob *knob : knobs)
        knob->disconnect(this);
    delete m_device;
    delete m_settings;
}

bool DevicePanel::openDevice(const char *failure)
{
    m_device = new VesmoraIoControl;
    if (m_device->openDevice())
        return true;
    qDebug() << failure;
    return false;
}

bool DevicePanel::setOutputVolumes(std::initializer_list<std::uint8_t> channels)
{
    bool lastDone = false;
    for (const std::uint8_t channel : channels)
        lastDone = m_device->setOutVolume(channel, outputVolume);
    if (!lastDone)
        qDebug() << "Failed to set output volume.";
    return lastDone;
}

void DevicePanel::openSettings(const QString &fileName)
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    QDir().mkpath(folder);
    m_settings = new QSettings(folder + fileName, QSettings::IniFormat, this);
}

void DevicePanel::layOutColumns(std::initializer_list<QLayout *> inputs,
                                std::initializer_list<QLayout *> outputs)
{
    auto *columns = new QHBoxLayout(this);
    columns->setAlignment(Qt::AlignCenter);
    columns->setContentsMargins(0, 0, 0, 0);
    for (QLayout *input : inputs)
        columns->addLayout(input);
    columns->addWidget(panelparts::separator());
    for (QLayout *output : outputs)
        columns->addLayout(output);
}

void DevicePanel::startMeters()
{
    auto *timer = new QTimer(this);
    connect(timer, &QTimer::timeout, this, [this] { m_meters.refresh(*m_device); });
    timer->start(meterInterval);
}

Knob *DevicePanel::addGain(QBoxLayout *column, const QString &name, std::uint8_t channel,
                           int maximumDb, LevelMeters::Source level)
{
    auto *gain = panelparts::gainKnob(name, maximumDb);
    column->addWidget(gain);
    bind(gain, [this, channel](int db) { setMicGain(channel, db); });
    addMeter(column, level);
    return gain;
}

void DevicePanel::addVolume(QBoxLayout *column, StereoOutput &output, const QString &name,
                            QLabel *caption, const VolumeActions &actions)
{
    auto *knobRow = new QHBoxLayout;
    output.volume = panelparts::volumeKnob(name);
    knobRow->addWidget(output.volume);
    connect(output.volume, &Knob::valueChangedSig, this, actions.volume);
    column->addLayout(knobRow);
    column->addWidget(caption);

    auto *buttons = panelparts::centredRow();
    output.mute = addButton(
        buttons, panelparts::outputButton(name + QStringLiteral("Mute"), QStringLiteral("MUTE")),
        actions.mute);
    output.dim = addButton(
        buttons, panelparts::outputButton(name + QStringLiteral("Dim"), QStringLiteral("DIM")),
        actions.dim);
    column->addLayout(buttons);
}

DevicePanel::VolumeActions DevicePanel::headphoneActions(StereoOutput &output,
                                                         const KnobAction &volume)
{
    const auto mute = [&output, volume](bool on) {
        output.muted = on;
        volume(on ? StereoOutput::silenceDb : output.volume->value);
        qDebug() << (on ? "Headphone Mute Button Clicked: Mute ON"
                        : "Headphone Mute Button Clicked: Mute OFF");
    };
    const auto dim = [&output, volume](bool on) {
        output.dimmed = on;
        volume(output.volume->value);
        qDebug() << (on ? "Headphone Dim Button Clicked: Dim ON"
                        : "Headphone Dim Button Clicked: Dim OFF");
    };
    return {.volume = volume, .mute = mute, .dim = dim};
}

Knob *DevicePanel::addPhoneVolume(QBoxLayout *column, const QString &name, QBoxLayout *readout,
                                  QLabel *caption, const KnobAction &action)
{
    auto *row = panelparts::centredRow();
    row->setSpacing(8);
    auto *phone = panelparts::phoneKnob(name);
    row->addWidget(phone);
    bind(phone, action);

    addMeter(readout, LevelMeters::PhoneInput);
    readout->addWidget(caption);
    row->addLayout(readout);
    column->addLayout(row);
    return phone;
}

Button *DevicePanel::addButton(QBoxLayout *layout, Button *button, const ButtonAction &action)
{
    layout->addWidget(button);
    connect(button, qOverload<bool>(&Button::pressed), this,
            [this, button, key = keyOf(button), action](bool on) {
                action(on);
                save(key, button->isSelected);
            });
    return button;
}

void DevicePanel::bind(Knob *knob, const KnobAction &action)
{
    connect(knob, &Knob::valueChangedSig, this, [this, knob, key = keyOf(knob), action](int db) {
        action(db);
        save(key, knob->value);
    });
}

void DevicePanel::addMeter(QBoxLayout *layout, LevelMeters::Source level)
{
    auto *meter = panelparts::meter();
    layout->addWidget(meter);
    m_meters.add(meter, level);
}

QString DevicePanel::keyOf(const Knob *knob)
{
    return QStringLiteral("Dial/%1Value").arg(knob->objectName());
}

QString DevicePanel::keyOf(const Button *button)
{
    return QStringLiteral("Button/%1IsChecked").arg(button->objectName());
}

void DevicePanel::restore(Knob *knob, int initialDb)
{
    knob->setValue(savedLevel(m_settings->value(keyOf(knob)), initialDb));
}

void DevicePanel::restore(Button *button)
{
    button->setSelected(m_settings->value(keyOf(button), false).toBool());
}

void DevicePanel::finishRestore()
{
    qDebug() << "已从配置文件加载控件状态";
}

void DevicePanel::save(const Knob *knob)
{
    save(keyOf(knob), knob->value);
}

void DevicePanel::save(const QString &key, const QVariant &value)
{
    m_settings->setValue(key, value);
    m_settings->sync();
    if (m_saves == Saves::Logged)
        qDebug() << "控件状态已保存到配置文件";
}

void DevicePanel::setMicGain(std::uint8_t channel, int db)
{
    report(m_device->setMicVolume(channel, static_cast<std::int16_t>(db * micStepsPerDb)),
           "Mic volume set to:", db, "Failed to set mic volume.");
}

void DevicePanel::setMicPad(std::uint8_t channel, bool on)
{
    qDebug() << "Mic 20dB Button Clicked" << on;
    // The text says channel 1 whichever channel was switched.
    report(m_device->setMic20dB(channel, on), "Mic 20dB switched for channel 1.",
           "Failed to switch mic 20dB.");
}

void DevicePanel::setMicPhantom(std::uint8_t channel, bool on)
{
    qDebug() << "Mic 48V Button Clicked" << on;
    report(m_device->setMic48V(channel, on), "Mic 48V switched for channel 1.",
           "Failed to switch mic 48V.");
}

void DevicePanel::setMonitor(std::span<const Route> routes, bool on)
{
    report(sendRoutes(routes, on ? 1.0 : 0.0), "Monitor Mic set to:", on ? 1 : 0,
           "Failed to set Monitor Mic.");
}

bool DevicePanel::sendVolume(const StereoOutput &output, int db)
{
    setStereoGain(m_mixer, output.firstGain, VesmoraIoControl::dbToGain(output.effectiveDb(db)));
    return m_device->sendMixerBlock(m_mixer);
}

bool DevicePanel::sendRoutes(std::span<const Route> routes, double gain)
{
    setRoutes(m_mixer, routes, gain);
    return m_device->sendMixerBlock(m_mixer);
}

void DevicePanel::report(bool done, const char *success, const char *failure)
{
    qDebug() << (done ? success : failure);
}
