#ifndef DESKTOPDEMO_H
#define DESKTOPDEMO_H

#include "lane.h"

/// Runs the panel with a simulated @p model on the user's own desktop until the panel quits or
/// Ctrl-C. Settings are kept in @p folder from one run to the next. Returns false with
/// @p error set when something cannot be started or the panel crashed.
bool runOnDesktop(const QString &model, const LanePrograms &programs, const QString &folder,
                  const QString &locale, QString *error);

#endif
