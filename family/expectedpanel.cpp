#include "expectedpanel.h"

#include "record.h"

#include <algorithm>

namespace {

using Kind = PanelControl::Kind;

constexpr int silence = -80;
constexpr int dimming = 20;

} // namespace

ExpectedPanel::ExpectedPanel(const PanelModel &model, const QMap<QString, QString> &stored)
    : m_model(model)
    , m_block(model.initialBlock())
    , m_deviceBlock(m_block.size(), 0.0)
    , m_saved(stored)
{ }

QStringList ExpectedPanel::constructionCommands() const
{
    QStringList commands(m_model.outputChannels.size(), "setOutVolume");
    for (const PanelControl &control : controls())
        commands << control.command;
    return commands;
}

void ExpectedPanel::construct(int failing, quint32 error)
{
    const QMap<QString, QString> stored = m_saved;
    int step = 0;
    const auto errorOfStep = [&] { return step++ == failing ? error : 0; };
    for (const int channel : m_model.outputChannels)
        sendPacket("setOutVolume", channel, 100, errorOfStep());
    for (const PanelControl &control : controls()) {
        const QString fallback = control.saved(control.initial);
        const QString value = stored.value(control.key(), fallback);
        act(control, control.isKnob() ? value.toInt() : value == "true", errorOfStep());
    }
    m_log << "已从配置文件加载控件状态";
}

void ExpectedPanel::act(const PanelControl &control, int value, quint32 error)
{
    // The answer to a packet counts for nothing.
    perform(control, value, error, error != 0 && control.command == "sendMixerBlock");
}

void ExpectedPanel::refuse(const PanelControl &control, int value)
{
    perform(control, value, 0, true);
}

void ExpectedPanel::perform(const PanelControl &control, int value, quint32 error, bool isRefused)
{
    const int accepted = std::clamp(value, control.minimum, control.maximum);
    m_values[control.name] = accepted;
    QMap<QString, QString> words{{"value", QString::number(accepted)},
                                 {"state", accepted ? "true" : "false"},
                                 {"ON", accepted ? "ON" : "OFF"}};
    if (!control.output.isEmpty()) {
        const int knob = this->value(control.output);
        setVolume(m_model.control(control.output),
                  control.mutesFromSilence && accepted ? silence : knob, error, isRefused);
    } else {
        log(control.log.before, words);
        const double entry = control.kind == Kind::Phone ? gainOf(accepted) : accepted;
        words["gain"] = QString::number(entry);
        if (control.channel != 0)
            sendPacket(control.command, control.channel,
                       control.kind == Kind::Gain ? 2 * accepted : accepted, error);
        else
            sendEntries(control.entries, entry, error);
        log(isRefused ? control.log.failure : control.log.success, words);
        if (control.kind == Kind::Instrument && !isRefused)
            m_instrumentText = accepted ? "INST" : "MIC";
    }
    log(control.log.after, words);
    // A volume saves its knob itself, whoever calls it.
    if (control.kind != Kind::Volume)
        save(control);
}

void ExpectedPanel::setVolume(const PanelControl &volume, int called, quint32 error, bool isRefused)
{
    const int effective = value(volume.name + "Mute") ? silence
        : value(volume.name + "Dim")                  ? called - dimming
                                                      : called;
    const QMap<QString, QString> words{{"called", QString::number(called)},
                                       {"effective", QString::number(effective)},
                                       {"gain", QString::number(gainOf(effective))}};
    log(volume.log.before, words);
    sendEntries(volume.entries, gainOf(effective), error);
    log(isRefused ? volume.log.failure : volume.log.success, words);
    save(volume);
}

void ExpectedPanel::sendPacket(const QString &command, int channel, int value, quint32 error)
{
    QString line = QString("%1 %2 %3").arg(command).arg(channel).arg(value);
    if (error != 0)
        line += QString(" !%1").arg(error);
    m_requests << line;
}

void ExpectedPanel::sendEntries(const QList<int> &entries, double value, quint32 error)
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
}

void ExpectedPanel::log(const QString &text, const QMap<QString, QString> &words)
{
    if (text.isEmpty())
        return;
    QString line = text;
    for (auto word = words.cbegin(); word != words.cend(); ++word)
        line.replace('{' + word.key() + '}', word.value());
    m_log << line;
}

void ExpectedPanel::save(const PanelControl &control)
{
    m_saved[control.key()] = control.saved(value(control.name));
    if (m_model.logsSaving)
        m_log << "控件状态已保存到配置文件";
}
