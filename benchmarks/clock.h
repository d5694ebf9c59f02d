#ifndef CLOCK_H
#define CLOCK_H

/// The processor time that all threads of this process have used so far, in microseconds.
double processorTime();

/// Microseconds of processor time that a measurement has to last, so that the clock's grain does
/// not show in it.
extern const double processorTimeGrain;

#endif
