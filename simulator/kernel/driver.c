#include "devices.h"
#include "latereplies.h"
#include "simstatus.h"
#include "simulator.h"

#define POOL_TAG 0x6D735665u
#define RECORD_BYTES (8u << 20)
#define HUNDRED_NANOSECONDS_PER_MS 10000u

Simulator simulator;

static uint64_t startTime;

void simulator_lock(void)
{
    KeEnterCriticalRegion();
    ExAcquireFastMutexUnsafe(&simulator.lock);
}

void simulator_unlock(void)
{
    ExReleaseFastMutexUnsafe(&simulator.lock);
    KeLeaveCriticalRegion();
}

uint32_t simulator_time(void)
{
    return (uint32_t)((KeQueryInterruptTime() - startTime) / HUNDRED_NANOSECONDS_PER_MS);
}

static NTSTATUS complete(IRP *irp, NTSTATUS status, ULONG_PTR information)
{
    irp->IoStatus.Status = status;
    irp->IoStatus.Information = information;
    IoCompleteRequest(irp, IO_NO_INCREMENT);
    return status;
}

/* The handle number is kept in the file object, the rest is the device's. */
static SimHandle handle_of(const FILE_OBJECT *file, const Device *device)
{
    const SimHandle handle = {(uint32_t)(ULONG_PTR)file->FsContext, device->bus,
                              device->generation};
    return handle;
}

static NTSTATUS NTAPI on_create(DEVICE_OBJECT *object, IRP *irp)
{
    const IO_STACK_LOCATION *stack = IoGetCurrentIrpStackLocation(irp);
    const IO_SECURITY_CONTEXT *security = stack->Parameters.Create.SecurityContext;
    Device *device = device_of(object);
    uint32_t status = SIM_NO_SUCH_FILE;
    SimHandle handle = {0, 0, 0};
    if (device->isControl)
        return complete(irp, STATUS_SUCCESS, 0);

    simulator_lock();
    if (device->isPresent)
        status = model_open(simulator.model, device->bus, security ? security->DesiredAccess : 0,
                            stack->Parameters.Create.ShareAccess, simulator_time(), &handle);
    if (status == SIM_SUCCESS) {
        ++device->handles;
        stack->FileObject->FsContext = (void *)(ULONG_PTR)handle.id;
    }
    simulator_unlock();
    return complete(irp, (NTSTATUS)status, 0);
}

static NTSTATUS NTAPI on_close(DEVICE_OBJECT *object, IRP *irp)
{
    const IO_STACK_LOCATION *stack = IoGetCurrentIrpStackLocation(irp);
    Device *device = device_of(object);
    const SimHandle handle = handle_of(stack->FileObject, device);
    /* Wine closes even what failed to open. */
    if (device->isControl || handle.id == 0)
        return complete(irp, STATUS_SUCCESS, 0);
    simulator_lock();
    model_close(simulator.model, &handle, simulator_time());
    devices_closed(object);
    simulator_unlock();
    return complete(irp, STATUS_SUCCESS, 0);
}

static NTSTATUS NTAPI on_cleanup(DEVICE_OBJECT *object, IRP *irp)
{
    (void)object;
    return complete(irp, STATUS_SUCCESS, 0);
}

static SimRequest request_of(IRP *irp)
{
    const IO_STACK_LOCATION *stack = IoGetCurrentIrpStackLocation(irp);
    const SimRequest request = {
        stack->Parameters.DeviceIoControl.IoControlCode,
        (const uint8_t *)irp->AssociatedIrp.SystemBuffer,
        stack->Parameters.DeviceIoControl.InputBufferLength,
        (uint8_t *)irp->AssociatedIrp.SystemBuffer,
        stack->Parameters.DeviceIoControl.OutputBufferLength,
        simulator_time(),
    };
    return request;
}

static SimReply control(const SimRequest *request)
{
    simulator_lock();
    SimReply reply = model_control(simulator.model, request);
    const NTSTATUS status = devices_sync_bus();
    simulator_unlock();
    if (!NT_SUCCESS(status)) {
        reply.status = (uint32_t)status;
        reply.bytesReturned = 0;
    }
    return reply;
}

static SimReply command(const SimHandle *handle, const SimRequest *request)
{
    simulator_lock();
    const SimReply reply = model_request(simulator.model, handle, request);
    simulator_unlock();
    return reply;
}

static NTSTATUS NTAPI on_device_control(DEVICE_OBJECT *object, IRP *irp)
{
    const IO_STACK_LOCATION *stack = IoGetCurrentIrpStackLocation(irp);
    const Device *device = device_of(object);
    const SimRequest request = request_of(irp);
    /* Other methods bring no system buffer, and no code of ours uses them. */
    if ((request.code & 3u) != METHOD_BUFFERED)
        return complete(irp, STATUS_INVALID_DEVICE_REQUEST, 0);

    const SimHandle handle = handle_of(stack->FileObject, device);
    /* Wine lets a program keep a handle that failed to open. */
    if (!device->isControl && handle.id == 0)
        return complete(irp, STATUS_INVALID_HANDLE, 0);
    const SimReply reply = device->isControl ? control(&request) : command(&handle, &request);
    if (reply.delay == 0)
        return complete(irp, (NTSTATUS)reply.status, reply.bytesReturned);
    irp->IoStatus.Status = (NTSTATUS)reply.status;
    irp->IoStatus.Information = reply.bytesReturned;
    return late_replies_add(irp, reply.delay);
}

static NTSTATUS allocate_model(void)
{
    simulator.model = ExAllocatePoolWithTag(PagedPool, sizeof(SimModel) + RECORD_BYTES, POOL_TAG);
    if (!simulator.model)
        return STATUS_INSUFFICIENT_RESOURCES;
    model_init(simulator.model, simulator.model + 1, RECORD_BYTES);
    return STATUS_SUCCESS;
}

static void NTAPI on_unload(DRIVER_OBJECT *driver)
{
    (void)driver;
    late_replies_stop();
    devices_delete_all();
    ExFreePoolWithTag(simulator.model, POOL_TAG);
}

NTSTATUS NTAPI DriverEntry(DRIVER_OBJECT *driver, UNICODE_STRING *registryPath);

NTSTATUS NTAPI DriverEntry(DRIVER_OBJECT *driver, UNICODE_STRING *registryPath)
{
    (void)registryPath;
    simulator.driver = driver;
    simulator.bus = NULL;
    startTime = KeQueryInterruptTime();
    ExInitializeFastMutex(&simulator.lock);
    driver->MajorFunction[IRP_MJ_CREATE] = on_create;
    driver->MajorFunction[IRP_MJ_CLOSE] = on_close;
    driver->MajorFunction[IRP_MJ_CLEANUP] = on_cleanup;
    driver->MajorFunction[IRP_MJ_DEVICE_CONTROL] = on_device_control;
    driver->DriverUnload = on_unload;

    NTSTATUS status = allocate_model();
    if (!NT_SUCCESS(status))
        return status;
    status = late_replies_start();
    if (NT_SUCCESS(status)) {
        status = devices_create_control(&simulator.control);
        if (!NT_SUCCESS(status))
            late_replies_stop();
    }
    if (!NT_SUCCESS(status))
        ExFreePoolWithTag(simulator.model, POOL_TAG);
    return status;
}
