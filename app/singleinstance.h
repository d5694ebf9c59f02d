#ifndef SINGLEINSTANCE_H
#define SINGLEINSTANCE_H

#include <optional>

class QSharedMemory;
class QSystemSemaphore;

/// Marks this process as the only running copy for as long as @p marker lives.
///
/// Returns the exit code with which the process must end instead: 0 when another copy runs, -1 when
/// it cannot be marked; the reason goes to the debug log. Waits for @p semaphore, which keeps two
/// starting copies apart, and releases it again on every path.
std::optional<int> claimSingleInstance(QSystemSemaphore &semaphore, QSharedMemory &marker);

#endif
