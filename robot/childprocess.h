#ifndef CHILDPROCESS_H
#define CHILDPROCESS_H

#include <QProcess>

#include <chrono>

/// A helper program that never outlives us: it gets a signal when this process dies, and Ctrl-C in
/// our terminal does not reach it, so that we can end things in their proper order.
class ChildProcess : public QProcess
{
public:
    explicit ChildProcess(QObject *parent = nullptr);
    /// Ends the program if it still runs.
    ~ChildProcess() override;

    /// Starts and waits until the program runs; false (see errorString()) when it cannot.
    bool launch(const QString &program, const QStringList &arguments);
    /// Asks the program to end, and kills it when it has not after @p patience.
    void stop(std::chrono::milliseconds patience = std::chrono::seconds(5));
};

struct CommandResult {
    /// -1 when the command did not start, crashed or took too long.
    int exitCode = -1;
    QByteArray output;
    /// Standard error, or why the command has no exit code.
    QByteArray errorOutput;

    bool succeeded() const { return exitCode == 0; }
};

/// Runs a command to its end, while our event loop goes on.
CommandResult runCommand(const QString &program, const QStringList &arguments,
                         const QProcessEnvironment &environment,
                         std::chrono::milliseconds deadline = std::chrono::seconds(60));

#endif
