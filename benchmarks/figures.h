#ifndef FIGURES_H
#define FIGURES_H

#include "comparison.h"

// What vesmora-bench measures within its own process, a file each.

/// Repaints of a knob against a QDial.
void measurePainting(const Effort &effort);
/// A notch of the wheel over a knob of a panel, until the value is saved.
void measureStep(const Effort &effort);
/// A press on a switch of a panel, until both its emissions have been acted on.
void measureClick(const Effort &effort);
/// From the look that finds a device until its panel is replayed, and until it is painted.
void measurePlug(const Effort &effort);

#endif
