#include "childprocess.h"

#include "waiting.h"

#include <csignal>
#include <sys/prctl.h>
#include <unistd.h>

ChildProcess::ChildProcess(QObject *parent)
    : QProcess(parent)
{
    setChildProcessModifier([] {
        setpgid(0, 0);
        prctl(PR_SET_PDEATHSIG, SIGTERM);
    });
}

ChildProcess::~ChildProcess()
{
    stop();
}

bool ChildProcess::launch(const QString &program, const QStringList &arguments)
{
    start(program, arguments);
    return waitForStarted();
}

void ChildProcess::stop(std::chrono::milliseconds patience)
{
    if (state() == NotRunning)
        return;
    terminate();
    if (waitForFinished(static_cast<int>(patience.count())))
        return;
    kill();
    waitForFinished();
}

CommandResult runCommand(const QString &program, const QStringList &arguments,
                         const QProcessEnvironment &environment, std::chrono::milliseconds deadline)
{
    ChildProcess process;
    process.setProcessEnvironment(environment);
    process.setStandardInputFile(QProcess::nullDevice());
    if (!process.launch(program, arguments))
        return {-1, {}, program.toLocal8Bit() + ": " + process.errorString().toLocal8Bit()};
    const bool ended = waitUntil([&] { return process.state() == QProcess::NotRunning; }, deadline);
    if (!ended)
        return {-1, {}, program.toLocal8Bit() + ": did not end in time"};
    const bool crashed = process.exitStatus() == QProcess::CrashExit;
    return {crashed ? -1 : process.exitCode(), process.readAllStandardOutput(),
            process.readAllStandardError()};
}
