#include "controlcommands.h"

#include "modelnames.h"
#include "recorddecoder.h"
#include "simstatus.h"

#include <QJsonDocument>

#include <limits>

namespace {

constexpr qint64 maximumU32 = std::numeric_limits<quint32>::max();
constexpr qint64 maximumInt = std::numeric_limits<int>::max();

quint32 identifier(Arguments &arguments)
{
    const QString name = arguments.word(QStringLiteral("the model"));
    const auto identifier = modelIdentifier(name);
    if (!identifier)
        arguments.reject(QStringLiteral("\"%1\" is no model").arg(name));
    return identifier.value_or(0);
}

CommandKey command(Arguments &arguments)
{
    const QString name = arguments.word(QStringLiteral("the command"));
    if (const auto key = findCommand(name))
        return *key;
    const auto code = Arguments::parse(name, 0, maximumU32);
    if (!code)
        arguments.reject(QStringLiteral("\"%1\" is no command").arg(name));
    return {static_cast<quint32>(code.value_or(0)), VESMORA_SIM_ANY_OPCODE};
}

std::optional<quint32> errorNumber(const QString &text)
{
    for (quint32 i = 1; i < sim_status_count; ++i) {
        if (text == QLatin1String(sim_statuses[i].name))
            return sim_statuses[i].error;
    }
    const auto number = Arguments::parse(text, 1, 0xFFFF);
    return number ? std::optional(static_cast<quint32>(*number)) : std::nullopt;
}

bool accepted(Arguments &arguments)
{
    arguments.finish();
    return arguments.error().isEmpty();
}

CommandResult plug(Arguments &arguments, SimulatorClient &client)
{
    const auto bus = arguments.option(QStringLiteral("--bus"), 0, VESMORA_BUS_COUNT - 1);
    const quint32 model = identifier(arguments);
    return {accepted(arguments) && client.plug(model, static_cast<int>(bus.value_or(0))), {}};
}

/// Asks nobody.
CommandResult models(Arguments &arguments, SimulatorClient &)
{
    CommandResult result{accepted(arguments), {}};
    for (const ModelName &model : modelNames())
        result.output += model.name.toUtf8() + '\n';
    return result;
}

CommandResult unplug(Arguments &arguments, SimulatorClient &client)
{
    return {accepted(arguments) && client.unplug(), {}};
}

CommandResult meter(Arguments &arguments, SimulatorClient &client)
{
    QMap<int, qint32> levels;
    do {
        const QString word = arguments.word(QStringLiteral("INDEX=VALUE"));
        const qsizetype sign = word.indexOf(u'=');
        const auto index = Arguments::parse(word.first(qMax(sign, 0)), 0, VESMORA_METER_LEVELS - 1);
        const auto level = Arguments::parse(word.sliced(sign + 1), -maximumInt - 1, maximumInt);
        if (!index || !level)
            arguments.reject(QStringLiteral("\"%1\" is no INDEX=VALUE").arg(word));
        levels.insert(static_cast<int>(index.value_or(0)), static_cast<qint32>(level.value_or(0)));
    } while (!arguments.isEmpty());
    return {accepted(arguments) && client.setMeters(levels), {}};
}

CommandResult fail(Arguments &arguments, SimulatorClient &client)
{
    const auto count = arguments.option(QStringLiteral("--count"), 0, maximumInt);
    const auto opcode = arguments.option(QStringLiteral("--opcode"), 0, 0xFF);
    const CommandKey key = command(arguments);
    const qint64 nth = arguments.number(QStringLiteral("the request number"), 1, maximumInt);
    const QString errorText = arguments.optionalWord().value_or(QStringLiteral("gen-failure"));
    const auto error = errorNumber(errorText);
    if (!error)
        arguments.reject(QStringLiteral("\"%1\" is no error").arg(errorText));
    const int own = key.opcode == VESMORA_SIM_ANY_OPCODE ? -1 : static_cast<int>(key.opcode);
    return {accepted(arguments)
                && client.fail(key.code, static_cast<int>(nth), *error,
                               static_cast<int>(count.value_or(1)),
                               static_cast<int>(opcode.value_or(own))),
            {}};
}

CommandResult delay(Arguments &arguments, SimulatorClient &client)
{
    const auto opcode = arguments.option(QStringLiteral("--opcode"), 0, 0xFF);
    const CommandKey key = command(arguments);
    const qint64 time =
        arguments.number(QStringLiteral("the time in ms"), 0, VESMORA_SIM_LONGEST_DELAY);
    const int own = key.opcode == VESMORA_SIM_ANY_OPCODE ? -1 : static_cast<int>(key.opcode);
    return {accepted(arguments)
                && client.delay(key.code, static_cast<int>(time),
                                static_cast<int>(opcode.value_or(own))),
            {}};
}

CommandResult clearFaults(Arguments &arguments, SimulatorClient &client)
{
    return {accepted(arguments) && client.clearFaults(), {}};
}

CommandResult clearRecord(Arguments &arguments, SimulatorClient &client)
{
    return {accepted(arguments) && client.clearRecord(), {}};
}

CommandResult reset(Arguments &arguments, SimulatorClient &client)
{
    return {accepted(arguments) && client.reset(), {}};
}

CommandResult record(Arguments &arguments, SimulatorClient &client)
{
    const bool isText = arguments.flag(QStringLiteral("--text"));
    if (!accepted(arguments))
        return {};
    CommandResult result;
    for (const Record &entry : client.record()) {
        result.output += isText ? entry.text().toUtf8()
                                : QJsonDocument(entry.toJson()).toJson(QJsonDocument::Compact);
        result.output += '\n';
    }
    result.done = client.errorString().isEmpty();
    return result;
}

CommandResult state(Arguments &arguments, SimulatorClient &client)
{
    if (!accepted(arguments))
        return {};
    const SimulatorState state = client.state();
    if (!client.errorString().isEmpty())
        return {};
    return {true, QJsonDocument(state.toJson()).toJson(QJsonDocument::Compact) + '\n'};
}

CommandResult firmware(Arguments &arguments, SimulatorClient &client)
{
    const QByteArray text = arguments.word(QStringLiteral("the version")).toLatin1();
    if (text.size() != VESMORA_FIRMWARE_VERSION_LENGTH)
        arguments.reject(QStringLiteral("the version is to be 10 characters long"));
    return {accepted(arguments) && client.setFirmware(text), {}};
}

CommandResult set(Arguments &arguments, SimulatorClient &client)
{
    static const QMap<QString, VesmoraSimValue> values{
        {QStringLiteral("identifier"), VESMORA_SIM_IDENTIFIER},
        {QStringLiteral("rate"), VESMORA_SIM_SAMPLE_RATE},
        {QStringLiteral("buffer"), VESMORA_SIM_BUFFER_SIZE},
        {QStringLiteral("latency"), VESMORA_SIM_USB_LATENCY}};
    const QString name = arguments.word(QStringLiteral("what to set"));
    const auto which = values.find(name);
    if (which == values.end())
        arguments.reject(QStringLiteral("\"%1\" cannot be set").arg(name));
    const qint64 value = arguments.number(QStringLiteral("the value"), 0, maximumU32);
    return {accepted(arguments) && client.setValue(*which, static_cast<quint32>(value)), {}};
}

} // namespace

const QList<ControlCommand> controlCommands{
    {"models", "models", models},
    {"plug", "plug MODEL|IDENTIFIER [--bus N]", plug},
    {"unplug", "unplug", unplug},
    {"meter", "meter INDEX=VALUE...", meter},
    {"fail", "fail CODE|NAME N [ERROR] [--count K] [--opcode X]", fail},
    {"delay", "delay CODE|NAME MILLISECONDS [--opcode X]", delay},
    {"clear-faults", "clear-faults", clearFaults},
    {"record", "record [--text]", record},
    {"clear-record", "clear-record", clearRecord},
    {"state", "state", state},
    {"firmware", "firmware TEXT", firmware},
    {"set", "set identifier|rate|buffer|latency VALUE", set},
    {"reset", "reset", reset},
};
