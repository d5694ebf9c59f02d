#ifndef CONTROLCOMMANDS_H
#define CONTROLCOMMANDS_H

#include "arguments.h"
#include "simulatorclient.h"

/// What a command prints, besides success or failure.
struct CommandResult {
    bool done = false; ///< false with no mistake in the arguments: the simulator failed
    QByteArray output;
};

/// One command of the program: takes its arguments, and drives the simulator if they are right.
struct ControlCommand {
    const char *name;
    const char *usage;
    CommandResult (*run)(Arguments &arguments, SimulatorClient &client);
};

extern const QList<ControlCommand> controlCommands;

#endif
