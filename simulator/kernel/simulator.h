#ifndef SIMULATOR_H
#define SIMULATOR_H

#include "simmodel.h"

#include <ntddk.h>

/* What the driver holds between requests. The lock guards everything but the first two members and
 * keeps its owner at passive level, as making and deleting devices needs it. */
typedef struct Simulator {
    DRIVER_OBJECT *driver;
    DEVICE_OBJECT *control;
    FAST_MUTEX lock;
    SimModel *model;
    DEVICE_OBJECT *bus; /* what is plugged in, or NULL */
} Simulator;

extern Simulator simulator;

void simulator_lock(void);
void simulator_unlock(void);

/* In ms since the driver was loaded. */
uint32_t simulator_time(void);

#endif
