#ifndef USAGE_H
#define USAGE_H

#include <QMap>

/// What a process has used and holds, as the kernel counts it. All of it is 0 for a process that
/// does not run.

/// Microseconds of processor time that all its threads have used so far.
double processorTimeOf(qint64 process);

/// How often each of its threads, by number, has gone to sleep so far: as often, it was woken.
QMap<int, qint64> wakeUpsOf(qint64 process);

/// Kibibytes.
struct Memory {
    double proportional = 0; ///< what is shared counts in proportion (PSS)
    double unique = 0;       ///< what no other process has (USS)
};
Memory memoryOf(qint64 process);

int openFilesOf(qint64 process);
int threadsOf(qint64 process);

#endif
