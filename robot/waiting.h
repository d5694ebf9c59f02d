#ifndef WAITING_H
#define WAITING_H

#include <chrono>
#include <functional>

/// How long anything that happens on another process' side may take before it counts as "did not
/// happen". Generous: a loaded machine is no failure.
inline constexpr std::chrono::milliseconds usualDeadline{15000};

/// Runs the event loop until @p condition holds; returns whether it did within @p deadline.
/// Needs a QCoreApplication.
bool waitUntil(const std::function<bool()> &condition,
               std::chrono::milliseconds deadline = usualDeadline);

#endif
