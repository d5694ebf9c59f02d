#include "arguments.h"
#include "modelnames.h"
#include "recordprinter.h"
#include "server.h"
#include "vesmoracontract.h"

#include <sys/prctl.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>

namespace {

enum ExitCode { Done = 0, Failed = 1, Misused = 2 };

struct Options {
    std::uint32_t identifier = 0; ///< 0 for nothing plugged in at first
    std::uint32_t bus = 0;
    bool print = false;
};

Options parse(Arguments &arguments)
{
    Options options;
    if (const auto name = arguments.textOption(QStringLiteral("--plug"))) {
        const auto identifier = modelIdentifier(*name);
        if (!identifier)
            arguments.reject(QStringLiteral("\"%1\" is no model").arg(*name));
        options.identifier = identifier.value_or(0);
    }
    const auto bus = arguments.option(QStringLiteral("--bus"), 0, VESMORA_BUS_COUNT - 1);
    options.bus = static_cast<std::uint32_t>(bus.value_or(0));
    options.print = arguments.flag(QStringLiteral("--print"));
    arguments.finish();
    return options;
}

/// The signals that end the program, as something to poll; they end it with its starter, too.
UniqueFd stopSignals()
{
    sigset_t ending;
    sigemptyset(&ending);
    for (const int signal : {SIGTERM, SIGINT, SIGHUP})
        sigaddset(&ending, signal);
    sigprocmask(SIG_BLOCK, &ending, nullptr);
    std::signal(SIGPIPE, SIG_IGN);
    const pid_t parent = ::getppid();
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    if (::getppid() != parent)
        ::raise(SIGTERM); // it ended in between
    return UniqueFd(::signalfd(-1, &ending, SFD_CLOEXEC));
}

int fail(const std::string &message)
{
    std::fprintf(stderr, "vesmora-sim: %s\n", message.c_str());
    return Failed;
}

int serve(const Options &options, const UniqueFd &stop)
{
    Simulation simulation;
    if (options.identifier != 0)
        simulation.plug(options.identifier, options.bus);
    RecordPrinter printer(simulation);
    Server server(simulation, [&] {
        if (options.print)
            printer.print();
    });
    if (const std::string mistake = server.start(); !mistake.empty())
        return fail(mistake);
    std::puts("ready");
    if (options.print)
        printer.print();
    std::fflush(stdout);
    return server.run(stop.get()) ? Done : fail("waiting failed");
}

} // namespace

int main(int argc, char **argv)
{
    QStringList words;
    for (int i = 1; i < argc; ++i)
        words.append(QString::fromLocal8Bit(argv[i]));
    Arguments arguments(words);
    const Options options = parse(arguments);
    if (!arguments.error().isEmpty()) {
        std::fprintf(stderr,
                     "vesmora-sim: %s\n"
                     "usage: vesmora-sim [--plug %s|IDENTIFIER] [--bus N] [--print]\n",
                     arguments.error().toLocal8Bit().constData(), qPrintable(modelChoice()));
        return Misused;
    }
    const UniqueFd stop = stopSignals();
    return stop ? serve(options, stop) : fail("signals cannot be received");
}
