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

/// Brings the widgets of a layout into its order, in which they are stacked and read out. Some were
/// made before the ones above them.
void stackInOrder(const QLayout &layout)
{
    for (int i = 0; i < layout.count(); ++i) {
        QLayoutItem *item = layout.itemAt(i);
        if (item->widget())
            item->widget()->raise();
        else if (item->layout())
            stackInOrder(*item->layout());
    }
}

void logSwitch(const char *text)
{
    if (text)
        qDebug() << text;
}

} // namespace

const DevicePanel::SwitchLog DevicePanel::headphoneSwitchLog{
    .muteOn = "Headphone Mute Button Clicked: Mute ON",
    .muteOff = "Headphone Mute Button Clicked: Mute OFF",
    .dimOn = "Headphone Dim Button Clicked: Dim ON",
    .dimOff = "Headphone Dim Button Clicked: Dim OFF",
};

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

bool DevicePanel::connectToDevice(std::initializer_list<std::uint8_t> outputs)
{
    if (!openDevice() || !setOutputVolumes(outputs))
        return false;
    openSettings();
    return true;
}

bool DevicePanel::openDevice()
{
    m_device = new VesmoraIoControl;
    if (m_device->openDevice())
        return true;
    qDebug("Failed to create device in %s.", metaObject()->className());
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

void DevicePanel::openSettings()
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    QDir().mkpath(folder);
    const QLatin1String model(metaObject()->className());
    m_settings =
        new QSettings(folder + u'/' + model + QLatin1String(".ini"), QSettings::IniFormat, this);
}

void DevicePanel::layOutColumns(std::initializer_list<QLayout *> inputs,
                                std::initializer_list<QLayout *> outputs)
{
    auto *columns = new QHBoxLayout(this);
    columns->setAlignment(Qt::AlignCenter);
    columns->setContentsMargins(0, 0, 0, 0);
    for (QLayout *input : inputs)
        columns->addLayout(input);
    columns->addWidget(panelparts::separator(this));
    for (QLayout *output : outputs)
        columns->addLayout(output);
    stackInOrder(*columns);
}

void DevicePanel::startMeters()
{
    auto *timer = new QTimer(this);
    connect(timer, &QTimer::timeout, this, [this] { m_meters.refresh(*m_device); });
    timer->start(meterInterval);
}

Knob *DevicePanel::addGain(QBoxLayout *column, const Microphone &mic, int maximumDb)
{
    auto *gain = panelparts::gainKnob(mic.name, maximumDb, this);
    column->addWidget(gain);
    bind(gain, [this, channel = mic.channel](int db) { setMicGain(channel, db); });
    addMeter(column, mic.level);
    return gain;
}

Button *DevicePanel::addPad(QBoxLayout *buttons, const Microphone &mic)
{
    return addButton(buttons,
                     panelparts::inputButton(mic.name + QLatin1String("20dB"),
                                             QStringLiteral("20dB"), panelparts::orange, this),
                     [this, channel = mic.channel](bool on) { setMicPad(channel, on); });
}

Button *DevicePanel::addPhantom(QBoxLayout *buttons, const Microphone &mic)
{
    return addButton(buttons,
                     panelparts::inputButton(mic.name + QLatin1String("48V"), QStringLiteral("48V"),
                                             panelparts::red, this),
                     [this, channel = mic.channel](bool on) { setMicPhantom(channel, on); });
}

Button *DevicePanel::addMonitor(QBoxLayout *buttons, const Microphone &mic, const QString &text,
                                std::span<const Route> routes)
{
    return addButton(
        buttons,
        panelparts::inputButton(QLatin1String("Monitor") + mic.name, text, panelparts::cyan, this),
        [this, routes](bool on) { setMonitor(routes, on); });
}

void DevicePanel::addVolume(QBoxLayout *column, StereoOutput &output, const QString &name,
                            QLabel *caption, const SwitchLog &log, const KnobAction &setVolume)
{
    auto *knobRow = new QHBoxLayout;
    output.volume = panelparts::volumeKnob(name, this);
    knobRow->addWidget(output.volume);
    const KnobAction changeVolume = bind(output.volume, setVolume);
    column->addLayout(knobRow);
    column->addWidget(caption);

    auto *buttons = panelparts::centredRow();
    output.mute = addButton(
        buttons,
        panelparts::outputButton(name + QStringLiteral("Mute"), QStringLiteral("MUTE"), this),
        [&output, changeVolume, log](bool on) {
            output.muted = on;
            // The device gets silence by StereoOutput::effectiveDb() in any case; who logs the
            // level that was asked for says silence, too.
            changeVolume(on ? StereoOutput::silenceDb : output.volume->value);
            logSwitch(on ? log.muteOn : log.muteOff);
        });
    output.dim = addButton(
        buttons,
        panelparts::outputButton(name + QStringLiteral("Dim"), QStringLiteral("DIM"), this),
        [&output, changeVolume, log](bool on) {
            output.dimmed = on;
            changeVolume(output.volume->value);
            logSwitch(on ? log.dimOn : log.dimOff);
        });
    column->addLayout(buttons);
}

Knob *DevicePanel::addPhoneVolume(QBoxLayout *column, const QString &name, QBoxLayout *readout,
                                  QLabel *caption, const KnobAction &action)
{
    auto *row = panelparts::centredRow();
    row->setSpacing(8);
    auto *phone = panelparts::phoneKnob(name, this);
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

/// Has the knob run @p action and then save itself; returns these two steps as one action.
DevicePanel::KnobAction DevicePanel::bind(Knob *knob, const KnobAction &action)
{
    KnobAction actAndSave = [this, knob, key = keyOf(knob), action](int db) {
        action(db);
        save(key, knob->value);
    };
    connect(knob, &Knob::valueChangedSig, this, actAndSave);
    return actAndSave;
}

void DevicePanel::addMeter(QBoxLayout *layout, LevelMeters::Source level)
{
    auto *meter = panelparts::meter(this);
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
