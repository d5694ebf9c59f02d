#include "expectedpanel.h"

#include "record.h"

#include <QDebug>

#include <algorithm>

namespace {

using Control = ExpectedPanel::Control;
using Action = ExpectedPanel::Action;

constexpr int silentDb = -80;

Control gain(const QString &name, int channel, int maximumDb)
{
    return {.name = name, .action = Action::Gain, .channel = channel, .maximumDb = maximumDb};
}

Control micSwitch(const QString &name, Action action, int channel, const QList<int> &entries = {})
{
    return {.name = name, .action = action, .channel = channel, .entries = entries};
}

QList<Control> outputControls(const QString &output, const QList<int> &entries)
{
    return {{.name = output,
             .action = Action::Volume,
             .output = output,
             .entries = entries,
             .initialDb = silentDb,
             .minimumDb = -80,
             .maximumDb = 6},
            {.name = output + "Mute", .action = Action::Mute, .output = output},
            {.name = output + "Dim", .action = Action::Dim, .output = output}};
}

Control phone(const QString &name, const QList<int> &entries)
{
    return {.name = name,
            .action = Action::Phone,
            .entries = entries,
            .minimumDb = -80,
            .maximumDb = 6};
}

QList<Control> rx1Controls()
{
    return QList<Control>{
               micSwitch("MicInstr", Action::Instrument, 1), micSwitch("Mic20dB", Action::Pad, 1),
               micSwitch("Mic48V", Action::Phantom, 1),
               micSwitch("MonitorMic", Action::Monitor, 1, {2048, 2081}), gain("Mic", 1, 42)}
    + outputControls("Headphone", {8192, 8193}) + QList<Control>{phone("OtgToHp", {2050, 2083})};
}

QList<Control> rx2Controls()
{
    return QList<Control>{micSwitch("Mic120dB", Action::Pad, 1),
                          micSwitch("Mic148V", Action::Phantom, 1),
                          micSwitch("MonitorMic1", Action::Monitor, 1, {2048, 2080, 2176, 2208}),
                          gain("Mic1", 1, 56),
                          gain("Mic2", 2, 56),
                          micSwitch("Mic220dB", Action::Pad, 2),
                          micSwitch("Mic248V", Action::Phantom, 2),
                          micSwitch("MonitorMic2", Action::Monitor, 2, {2049, 2081, 2177, 2209})}
    + outputControls("Speaker", {8192, 8193}) + outputControls("Headphone", {8196, 8197})
        + QList<Control>{phone("OtgToHp", {2178, 2211}), phone("OtgToSP", {2050, 2083})};
}

QList<Control> rmControls()
{
    return QList<Control>{micSwitch("MonitorMic", Action::Monitor, 1, {2048, 2081}),
                          gain("Mic", 1, 42)}
    + outputControls("Headphone", {8192, 8193});
}

QList<Control> controlsOf(PanelModel model)
{
    switch (model) {
    case PanelModel::Rx1:
        return rx1Controls();
    case PanelModel::Rx2:
        return rx2Controls();
    case PanelModel::Rm:
        break;
    }
    return rmControls();
}

/// Below the bottom of the range is silence as well; above its top nothing comes here.
double limitedGain(int db)
{
    return db <= silentDb ? 0.0 : gainOf(db);
}

/// As the log writes numbers.
QString shortText(double value)
{
    return QString::number(value, 'g', 6);
}

QString onOff(bool on)
{
    return on ? "true" : "false";
}

} // namespace

bool ExpectedPanel::Control::isKnob() const
{
    return action == Action::Gain || action == Action::Volume || action == Action::Phone;
}

QString ExpectedPanel::Control::command() const
{
    switch (action) {
    case Action::Gain:
        return "setMicVolume";
    case Action::Instrument:
        return "switchMicInstruction";
    case Action::Pad:
        return "setMic20dB";
    case Action::Phantom:
        return "setMic48V";
    default:
        return "sendMixerBlock";
    }
}

QString ExpectedPanel::Control::key() const
{
    return QString(isKnob() ? "Dial/%1Value" : "Button/%1IsChecked").arg(name);
}

ExpectedPanel::ExpectedPanel(PanelModel model)
    : m_model(model)
    , m_controls(controlsOf(model))
    , m_outputChannels(model == PanelModel::Rx2 ? QList<int>{1, 2, 5, 6} : QList<int>{1, 2})
    , m_block(initialBlock(model))
    , m_deviceBlock(m_block.size(), 0.0)
{ }

QStringList ExpectedPanel::constructionCommands() const
{
    QStringList commands(m_outputChannels.size(), "setOutVolume");
    for (const Control &control : m_controls)
        commands << control.command();
    return commands;
}

void ExpectedPanel::construct(int failing, quint32 error)
{
    int step = 0;
    const auto errorOfStep = [&] { return step++ == failing ? error : 0; };
    for (const int channel : m_outputChannels)
        sendPacket("setOutVolume", channel, 100, errorOfStep());
    for (const Control &control : m_controls)
        act(control, control.initialDb, errorOfStep());
    m_log << "已从配置文件加载控件状态";
}

void ExpectedPanel::act(const Control &control, int value, quint32 error)
{
    const int accepted =
        control.isKnob() ? std::clamp(value, control.minimumDb, control.maximumDb) : value;
    if (control.channel != 0)
        actOnMic(control, accepted, error);
    else
        actOnOutput(control, accepted, error);
    // A volume saves its knob itself, whoever calls it.
    if (control.action != Action::Volume)
        save(control.key(), control.isKnob() ? QString::number(accepted) : onOff(accepted != 0));
}

void ExpectedPanel::actOnMic(const Control &control, int value, quint32 error)
{
    // The answer to a packet counts for nothing.
    const QString command = control.command();
    switch (control.action) {
    case Action::Gain:
        sendPacket(command, control.channel, 2 * value, error);
        m_log << QString("Mic volume set to: %1").arg(value);
        break;
    case Action::Instrument:
        sendPacket(command, control.channel, value, error);
        m_log << "Mic Instr Button Clicked " + onOff(value)
              << "Mic instruction switched for channel 1.";
        m_instrumentText = value ? "INST" : "MIC";
        break;
    case Action::Pad:
        sendPacket(command, control.channel, value, error);
        m_log << "Mic 20dB Button Clicked " + onOff(value) << "Mic 20dB switched for channel 1.";
        break;
    case Action::Phantom:
        sendPacket(command, control.channel, value, error);
        m_log << "Mic 48V Button Clicked " + onOff(value) << "Mic 48V switched for channel 1.";
        break;
    default:
        report(sendEntries(control.entries, value, error),
               QString("Monitor Mic set to: %1").arg(value), "Failed to set Monitor Mic.");
    }
}

void ExpectedPanel::actOnOutput(const Control &control, int value, quint32 error)
{
    const QString &output = control.output;
    const bool isRx2 = m_model == PanelModel::Rx2;
    if (control.action == Action::Phone) {
        const double gain = limitedGain(value);
        const QString path = control.name == "OtgToSP" ? "SP" : "HP";
        report(sendEntries(control.entries, gain, error),
               QString("OTG to %1 volume set to: %2").arg(path, shortText(gain)),
               "Failed to set OTG to HP volume.");
    } else if (control.action == Action::Volume) {
        m_volumes[output] = value;
        setVolume(output, value, error);
    } else if (control.action == Action::Mute) {
        m_muted[output] = value;
        const bool callsWithSilence = value && !(isRx2 && output == "Headphone");
        setVolume(output, callsWithSilence ? silentDb : m_volumes[output], error);
        if (!isRx2 || output == "Speaker")
            m_log << output + " Mute Button Clicked: Mute " + (value ? "ON" : "OFF");
    } else {
        m_dimmed[output] = value;
        setVolume(output, m_volumes[output], error);
        if (!isRx2)
            m_log << output + " Dim Button Clicked: Dim " + (value ? "ON" : "OFF");
    }
}

void ExpectedPanel::setVolume(const QString &output, int db, quint32 error)
{
    const int effective = m_muted[output] ? silentDb : m_dimmed[output] ? db - 20 : db;
    const double gain = limitedGain(effective);
    const bool done = sendEntries(volumeEntries(output), gain, error);
    const QString failure = QString("Failed to set %1 volume.").arg(output.toLower());
    const QString success = output + " volume set to: ";
    if (m_model == PanelModel::Rx2)
        m_log << QString("%1 Knob value changed: %2").arg(output).arg(db);
    if (m_model == PanelModel::Rx2)
        report(done, success + QString::number(effective), failure);
    else if (m_model == PanelModel::Rx1 || !done)
        report(done, success + shortText(gain), failure);
    save(QString("Dial/%1Value").arg(output), QString::number(m_volumes[output]));
}

QList<int> ExpectedPanel::volumeEntries(const QString &output) const
{
    for (const Control &control : m_controls) {
        if (control.action == Action::Volume && control.output == output)
            return control.entries;
    }
    return {};
}

void ExpectedPanel::sendPacket(const QString &command, int channel, int value, quint32 error)
{
    QString line = QString("%1 %2 %3").arg(command).arg(channel).arg(value);
    if (error != 0)
        line += QString(" !%1").arg(error);
    m_requests << line;
}

bool ExpectedPanel::sendEntries(const QList<int> &entries, double value, quint32 error)
{
    for (const int entry : entries)
        m_block[entry] = value;
    Record request;
    request.command = "sendMixerBlock";
    request.error = error;
    for (int i = 0; i < m_block.size(); ++i) {
        if (m_block.at(i) != m_deviceBlock.at(i))
            request.changes.append({i, m_block.at(i)});
    }
    m_requests << request.text();
    if (error == 0)
        m_deviceBlock = m_block;
    return error == 0;
}

void ExpectedPanel::report(bool done, const QString &success, const QString &failure)
{
    m_log << (done ? success : failure);
}

void ExpectedPanel::save(const QString &key, const QString &value)
{
    m_saved[key] = value;
    if (m_model == PanelModel::Rx2)
        m_log << "控件状态已保存到配置文件";
}
