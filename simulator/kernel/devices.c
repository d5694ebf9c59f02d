#include "devices.h"

#include "simulator.h"

/* Appends an ASCII text; the caller knows that there is room. */
static void append_text(UNICODE_STRING *to, const char *text)
{
    for (; *text; ++text) {
        to->Buffer[to->Length / sizeof(WCHAR)] = (WCHAR)(unsigned char)*text;
        to->Length = (USHORT)(to->Length + sizeof(WCHAR));
    }
}

static void append_number(UNICODE_STRING *to, uint32_t number)
{
    char digits[11];
    uint32_t place = sizeof digits - 1;
    digits[place] = 0;
    do {
        digits[--place] = (char)('0' + number % 10);
        number /= 10;
    } while (number != 0);
    append_text(to, digits + place);
}

Device *device_of(DEVICE_OBJECT *object)
{
    return (Device *)object->DeviceExtension;
}

/* `serial` tells device objects apart whose names for programs are the same. */
static NTSTATUS create(const char *name, uint32_t serial, DEVICE_OBJECT **created)
{
    WCHAR text[40];
    UNICODE_STRING objectName = {0, sizeof text, text};
    append_text(&objectName, "\\Device\\VesmoraSim");
    append_number(&objectName, serial);
    NTSTATUS status = IoCreateDevice(simulator.driver, sizeof(Device), &objectName,
                                     FILE_DEVICE_UNKNOWN, FILE_DEVICE_SECURE_OPEN, FALSE, created);
    if (!NT_SUCCESS(status))
        return status;

    Device *device = device_of(*created);
    RtlZeroMemory(device, sizeof *device);
    device->isPresent = 1;
    device->link.Buffer = device->linkText;
    device->link.MaximumLength = sizeof device->linkText;
    append_text(&device->link, "\\DosDevices\\");
    append_text(&device->link, name);
    return STATUS_SUCCESS;
}

/* Lets programs see a device that is ready. */
static NTSTATUS publish(DEVICE_OBJECT *object)
{
    UNICODE_STRING objectName;
    WCHAR text[40];
    Device *device = device_of(object);
    objectName.Buffer = text;
    objectName.Length = 0;
    objectName.MaximumLength = sizeof text;
    append_text(&objectName, "\\Device\\VesmoraSim");
    append_number(&objectName, device->generation);
    const NTSTATUS status = IoCreateSymbolicLink(&device->link, &objectName);
    if (!NT_SUCCESS(status)) {
        IoDeleteDevice(object);
        return status;
    }
    object->Flags &= ~(ULONG)DO_DEVICE_INITIALIZING;
    return status;
}

NTSTATUS devices_create_control(DEVICE_OBJECT **control)
{
    NTSTATUS status = create(VESMORA_SIM_DEVICE_NAME, 0, control);
    if (!NT_SUCCESS(status))
        return status;
    device_of(*control)->isControl = 1;
    return publish(*control);
}

static NTSTATUS create_bus(void)
{
    const SimModel *model = simulator.model;
    DEVICE_OBJECT *object;
    NTSTATUS status = create(VESMORA_BUS_NAME, model->generation, &object);
    if (!NT_SUCCESS(status))
        return status;
    Device *device = device_of(object);
    device->bus = model->bus;
    device->generation = model->generation;
    append_number(&device->link, model->bus);
    status = publish(object);
    if (NT_SUCCESS(status))
        simulator.bus = object;
    return status;
}

static void retire_bus(void)
{
    DEVICE_OBJECT *object = simulator.bus;
    Device *device = device_of(object);
    simulator.bus = NULL;
    IoDeleteSymbolicLink(&device->link);
    device->isPresent = 0;
    if (device->handles == 0)
        IoDeleteDevice(object);
}

NTSTATUS devices_sync_bus(void)
{
    SimModel *model = simulator.model;
    if (simulator.bus
        && (!model->plugged || device_of(simulator.bus)->generation != model->generation))
        retire_bus();
    if (!model->plugged || simulator.bus)
        return STATUS_SUCCESS;
    const NTSTATUS status = create_bus();
    if (!NT_SUCCESS(status))
        model_unplug(model, simulator_time());
    return status;
}

void devices_closed(DEVICE_OBJECT *object)
{
    Device *device = device_of(object);
    if (--device->handles == 0 && !device->isPresent)
        IoDeleteDevice(object);
}

void devices_delete_all(void)
{
    while (simulator.driver->DeviceObject) {
        DEVICE_OBJECT *object = simulator.driver->DeviceObject;
        Device *device = device_of(object);
        if (device->isPresent)
            IoDeleteSymbolicLink(&device->link);
        IoDeleteDevice(object);
    }
}
