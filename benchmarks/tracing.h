#ifndef TRACING_H
#define TRACING_H

#include "comparison.h"

#include "record.h"

#include <QStringList>

class SimulatorClient;

/// What can be seen of work from outside, apart from time.
struct Trace {
    QList<Record> records; ///< of the simulated interface: opens, closes, requests
    QStringList log;
};

/// Takes what goes to the log out of sight as long as it lives, for who writes it at the same cost.
/// One at a time.
class Log
{
public:
    Log();
    ~Log();
    Log(const Log &) = delete;
    Log &operator=(const Log &) = delete;
};

/// Does the work and tells what was seen of it. Needs a Log.
Trace traceOf(SimulatorClient &simulator, const Work &work);

/// Ends the program unless the work of both sides was the same. @p name is what is compared.
void requireSameTraces(const QString &name, const Trace &product, const Trace &floor);

#endif
