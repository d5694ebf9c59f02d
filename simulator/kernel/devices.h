#ifndef DEVICES_H
#define DEVICES_H

#include <ntddk.h>

#include <stdint.h>

/* The device extension of the control device and of every bus device. A bus device that was
 * unplugged loses its name at once and lives on, failing, until its last handle is closed. */
typedef struct Device {
    int isControl;
    int isPresent;
    uint32_t bus;
    uint32_t generation;
    uint32_t handles;
    UNICODE_STRING link; /* its name for programs, as long as it is present */
    WCHAR linkText[40];
} Device;

Device *device_of(DEVICE_OBJECT *object);

/* All need passive level, and the lock once the driver is loaded. */
NTSTATUS devices_create_control(DEVICE_OBJECT **control);
/* Makes the bus device what the model says. A failure undoes the plugging in. */
NTSTATUS devices_sync_bus(void);
void devices_closed(DEVICE_OBJECT *object);
/* All of them, when the driver goes. */
void devices_delete_all(void);

#endif
