#ifndef OTGTIMERS_H
#define OTGTIMERS_H

#include <QList>
#include <QTimer>

/// The timers of the OTG steps of an engine that belongs to @p owner.
QList<QTimer *> otgTimers(const QObject &owner);
/// Whether one of them runs. Each half of a cycle starts the next before its own timer is seen to
/// rest, so this holds until the cycle has ended.
bool isOtgPending(const QObject &owner);

#endif
