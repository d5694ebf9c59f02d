#include "latereplies.h"

#include "simulator.h"

#define HUNDRED_NANOSECONDS_PER_MS 10000
#define FOR_EVER_MS 0xFFFFFFFFu

static LIST_ENTRY waiting;
static KEVENT changed;
static void *worker;
static int isStopping;

static uint32_t *due_time(IRP *irp)
{
    return (uint32_t *)&irp->Tail.Overlay.DriverContext[0];
}

static IRP *irp_of(LIST_ENTRY *entry)
{
    return CONTAINING_RECORD(entry, IRP, Tail.Overlay.ListEntry);
}

/* In ms, with wrap-around of the clock; 0 when it is over. */
static uint32_t time_left(uint32_t due, uint32_t now)
{
    const uint32_t left = due - now;
    return left > 0x7FFFFFFFu ? 0 : left;
}

/* Takes out a request that is due, or NULL and the time until one is. */
static IRP *take_due(uint32_t *wait)
{
    const uint32_t now = simulator_time();
    *wait = FOR_EVER_MS;
    for (LIST_ENTRY *entry = waiting.Flink; entry != &waiting; entry = entry->Flink) {
        const uint32_t left = isStopping ? 0 : time_left(*due_time(irp_of(entry)), now);
        if (left == 0) {
            RemoveEntryList(entry);
            return irp_of(entry);
        }
        if (left < *wait)
            *wait = left;
    }
    return NULL;
}

static void NTAPI work(void *context)
{
    int goesOn = 1;
    (void)context;
    while (goesOn) {
        uint32_t wait;
        simulator_lock();
        IRP *irp = take_due(&wait);
        goesOn = irp || !isStopping;
        simulator_unlock();
        if (irp) {
            IoCompleteRequest(irp, IO_NO_INCREMENT);
        } else if (goesOn) {
            LARGE_INTEGER timeout;
            timeout.QuadPart = -(LONGLONG)wait * HUNDRED_NANOSECONDS_PER_MS;
            KeWaitForSingleObject(&changed, Executive, KernelMode, FALSE,
                                  wait == FOR_EVER_MS ? NULL : &timeout);
        }
    }
    PsTerminateSystemThread(STATUS_SUCCESS);
}

NTSTATUS late_replies_start(void)
{
    HANDLE thread;
    isStopping = 0;
    InitializeListHead(&waiting);
    KeInitializeEvent(&changed, SynchronizationEvent, FALSE);
    NTSTATUS status =
        PsCreateSystemThread(&thread, THREAD_ALL_ACCESS, NULL, NULL, NULL, work, NULL);
    if (!NT_SUCCESS(status))
        return status;
    status = ObReferenceObjectByHandle(thread, THREAD_ALL_ACCESS, NULL, KernelMode, &worker, NULL);
    ZwClose(thread);
    return status;
}

NTSTATUS late_replies_add(IRP *irp, uint32_t milliseconds)
{
    IoMarkIrpPending(irp);
    simulator_lock();
    *due_time(irp) = simulator_time() + milliseconds;
    InsertTailList(&waiting, &irp->Tail.Overlay.ListEntry);
    simulator_unlock();
    KeSetEvent(&changed, IO_NO_INCREMENT, FALSE);
    return STATUS_PENDING;
}

void late_replies_stop(void)
{
    simulator_lock();
    isStopping = 1;
    simulator_unlock();
    KeSetEvent(&changed, IO_NO_INCREMENT, FALSE);
    KeWaitForSingleObject(worker, Executive, KernelMode, FALSE, NULL);
    ObDereferenceObject(worker);
}
