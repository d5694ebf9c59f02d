#include "panelmodel.h"

#include "modelnames.h"

#include <algorithm>
#include <cmath>

namespace {

using Kind = PanelControl::Kind;
using Log = PanelControl::Log;

constexpr int columns = 32;
constexpr int firstGain = 256 * columns;
constexpr int outputGains = 96;
constexpr int silence = -80;

PanelControl gain(const QString &name, int place, int channel, int maximum)
{
    PanelControl control{name, Kind::Gain, place, "setMicVolume", channel};
    control.levels = {channel - 1};
    control.maximum = maximum;
    control.log = {{}, "Mic volume set to: {value}", "Failed to set mic volume."};
    return control;
}

/// Its log names channel 1, whatever its channel.
PanelControl micSwitch(const QString &name, Kind kind, int place, const QString &command,
                       int channel, const QString &what, const QString &button)
{
    PanelControl control{name, kind, place, command, channel};
    control.log = {QString("Mic %1 Button Clicked {state}").arg(button),
                   QString("Mic %1 switched for channel 1.").arg(what),
                   QString("Failed to switch mic %1.").arg(what)};
    return control;
}

PanelControl pad(const QString &name, int place, int channel)
{
    return micSwitch(name, Kind::Pad, place, "setMic20dB", channel, "20dB", "20dB");
}

PanelControl phantom(const QString &name, int place, int channel)
{
    return micSwitch(name, Kind::Phantom, place, "setMic48V", channel, "48V", "48V");
}

PanelControl monitor(const QString &name, int place, const QList<int> &entries)
{
    PanelControl control{name, Kind::Monitor, place};
    control.entries = entries;
    control.log = {{}, "Monitor Mic set to: {value}", "Failed to set Monitor Mic."};
    return control;
}

/// A knob from silence up.
PanelControl level(const QString &name, Kind kind, int place, const QList<int> &entries)
{
    PanelControl control{name, kind, place};
    control.entries = entries;
    control.minimum = silence;
    control.maximum = 6;
    return control;
}

/// @p output is the first of its two gains.
PanelControl volume(const QString &name, int place, int output, const QString &before,
                    const QString &success)
{
    const int entry = firstGain + output;
    PanelControl control = level(name, Kind::Volume, place, {entry, entry + 1});
    control.output = name;
    control.initial = silence;
    control.log = {before, success, QString("Failed to set %1 volume.").arg(name.toLower())};
    return control;
}

/// @p path is "HP" or "SP"; either fails in the headphone's words.
PanelControl phone(const QString &name, int place, const QString &path, const QList<int> &entries)
{
    PanelControl control = level(name, Kind::Phone, place, entries);
    control.levels = {2, 3};
    control.log = {{},
                   QString("OTG to %1 volume set to: {gain}").arg(path),
                   "Failed to set OTG to HP volume."};
    return control;
}

/// A mute or dim; one that logs itself mutes from silence, too.
PanelControl outputSwitch(const QString &output, Kind kind, int place, bool isLogged)
{
    const QString action = kind == Kind::Mute ? "Mute" : "Dim";
    PanelControl control{output + action, kind, place};
    control.output = output;
    control.mutesFromSilence = kind == Kind::Mute && isLogged;
    if (isLogged)
        control.log.after = QString("%1 %2 Button Clicked: %2 {ON}").arg(output, action);
    return control;
}

/// Entries at unity: @p length of them down the diagonal from (@p row, @p column).
QList<int> diagonal(int row, int column, int length)
{
    QList<int> entries;
    for (int i = 0; i < length; ++i)
        entries << (row + i) * columns + column + i;
    return entries;
}

/// What all models have.
QList<int> commonRoutes()
{
    return diagonal(4, 0, 8) + diagonal(96, 0, 2) + diagonal(128, 0, 2) + diagonal(130, 0, 2)
        + diagonal(160, 0, 8);
}

/// In all four rows of both outputs.
QList<int> toBothOutputs(int column)
{
    return {64 * columns + column, 65 * columns + column, 68 * columns + column,
            69 * columns + column};
}

PanelModel rx1()
{
    return {.name = "rx1",
            .outputChannels = {1, 2},
            .fixedRoutes = commonRoutes(),
            .controls = {
                micSwitch("MicInstr", Kind::Instrument, 0, "switchMicInstruction", 1, "instruction",
                          "Instr"),
                pad("Mic20dB", 1, 1),
                phantom("Mic48V", 2, 1),
                monitor("MonitorMic", 3, diagonal(64, 0, 2)),
                gain("Mic", 0, 1, 42),
                volume("Headphone", 1, 0, {}, "Headphone volume set to: {gain}"),
                outputSwitch("Headphone", Kind::Mute, 4, true),
                outputSwitch("Headphone", Kind::Dim, 5, true),
                phone("OtgToHp", 2, "HP", diagonal(64, 2, 2)),
            }};
}

PanelModel rx2()
{
    return {.name = "rx2",
            .outputChannels = {1, 2, 5, 6},
            .fixedRoutes = commonRoutes() + diagonal(100, 0, 2) + diagonal(132, 0, 2),
            .logsSaving = true,
            .controls = {
                pad("Mic120dB", 0, 1),
                phantom("Mic148V", 1, 1),
                monitor("MonitorMic1", 2, toBothOutputs(0)),
                gain("Mic1", 0, 1, 56),
                gain("Mic2", 1, 2, 56),
                pad("Mic220dB", 3, 2),
                phantom("Mic248V", 4, 2),
                monitor("MonitorMic2", 5, toBothOutputs(1)),
                volume("Speaker", 2, 0, "Speaker Knob value changed: {called}",
                       "Speaker volume set to: {effective}"),
                outputSwitch("Speaker", Kind::Mute, 6, true),
                outputSwitch("Speaker", Kind::Dim, 7, false),
                volume("Headphone", 4, 4, "Headphone Knob value changed: {called}",
                       "Headphone volume set to: {effective}"),
                outputSwitch("Headphone", Kind::Mute, 8, false),
                outputSwitch("Headphone", Kind::Dim, 9, false),
                phone("OtgToHp", 5, "HP", diagonal(68, 2, 2)),
                phone("OtgToSP", 3, "SP", diagonal(64, 2, 2)),
            }};
}

PanelModel rm()
{
    return {.name = "rm",
            .outputChannels = {1, 2},
            .fixedRoutes = commonRoutes() + diagonal(64, 2, 2),
            .controls = {
                monitor("MonitorMic", 0, diagonal(64, 0, 2)),
                gain("Mic", 0, 1, 42),
                volume("Headphone", 1, 0, {}, {}),
                outputSwitch("Headphone", Kind::Mute, 1, true),
                outputSwitch("Headphone", Kind::Dim, 2, true),
            }};
}

} // namespace

QString PanelControl::key() const
{
    return QString(isKnob() ? "Dial/%1Value" : "Button/%1IsChecked").arg(name);
}

QString PanelControl::saved(int value) const
{
    return isKnob() ? QString::number(value) : value != 0 ? "true" : "false";
}

quint32 PanelModel::identifier() const
{
    const std::optional<quint32> identifier = modelIdentifier(name);
    if (!identifier)
        qFatal("The simulator knows no model %s", qPrintable(name));
    return *identifier;
}

const PanelControl &PanelModel::control(const QString &name) const
{
    for (const PanelControl &one : controls) {
        if (one.name == name)
            return one;
    }
    qFatal("The panel of the %s has no control %s", qPrintable(this->name), qPrintable(name));
}

QList<PanelControl> PanelModel::inPicture(bool knobs) const
{
    QList<PanelControl> found = controls;
    found.removeIf([knobs](const PanelControl &control) { return control.isKnob() != knobs; });
    std::sort(found.begin(), found.end(),
              [](const PanelControl &a, const PanelControl &b) { return a.place < b.place; });
    return found;
}

QList<double> PanelModel::initialBlock() const
{
    QList<double> block(firstGain, 0.0);
    block.append(QList<double>(outputGains, 1.0));
    for (const int entry : fixedRoutes)
        block[entry] = 1.0;
    return block;
}

const QList<PanelModel> &allPanelModels()
{
    static const QList<PanelModel> models{rx1(), rx2(), rm()};
    return models;
}

const PanelModel &panelModel(const QString &name)
{
    for (const PanelModel &one : allPanelModels()) {
        if (one.name == name)
            return one;
    }
    qFatal("There is no model %s", qPrintable(name));
}

double gainOf(int db)
{
    return db <= silence ? 0.0 : std::pow(10.0, db / 20.0);
}
