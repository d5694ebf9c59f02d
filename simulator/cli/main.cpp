#include "binaryoutput.h"
#include "controlcommands.h"

#include <QCoreApplication>

#include <cstdio>

namespace {

enum ExitCode { Done = 0, Failed = 1, Misused = 2 };

void complain(const QString &message)
{
    std::fprintf(stderr, "vesmora-simctl: %s\n", message.toLocal8Bit().constData());
}

int misused(const QString &mistake)
{
    complain(mistake);
    std::fputs("usage:\n", stderr);
    for (const ControlCommand &command : controlCommands)
        std::fprintf(stderr, "  vesmora-simctl %s\n", command.usage);
    return Misused;
}

int run(const ControlCommand &command, Arguments arguments)
{
    SimulatorClient client;
    const CommandResult result = command.run(arguments, client);
    if (!arguments.error().isEmpty())
        return misused(arguments.error());
    if (!result.done) {
        complain(client.errorString());
        return Failed;
    }
    const auto length = static_cast<std::size_t>(result.output.size());
    if (std::fwrite(result.output.constData(), 1, length, stdout) != length
        || std::fflush(stdout)) {
        complain(QStringLiteral("the output could not be written"));
        return Failed;
    }
    return Done;
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    useBinaryOutput();
    Arguments arguments(QCoreApplication::arguments().sliced(1));
    const QString name = arguments.word(QStringLiteral("the command"));
    for (const ControlCommand &command : controlCommands) {
        if (name == QLatin1String(command.name))
            return run(command, arguments);
    }
    return misused(name.isEmpty() ? arguments.error()
                                  : QStringLiteral("there is no command \"%1\"").arg(name));
}
