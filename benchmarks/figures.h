#ifndef FIGURES_H
#define FIGURES_H

#include "comparison.h"

// What vesmora-bench measures within its own process, a file each.

/// Repaints of a knob against a QDial.
void measurePainting(const Effort &effort);

#endif
