#ifndef LATEREPLIES_H
#define LATEREPLIES_H

#include <ntddk.h>

#include <stdint.h>

/* Requests whose answer is to be seen late. They wait in a queue, and not in the thread that
 * brought them, so that other requests go on meanwhile. */

NTSTATUS late_replies_start(void);

/* Takes over a request whose status is filled in; the caller returns what this returns. */
NTSTATUS late_replies_add(IRP *irp, uint32_t milliseconds);

/* Answers everything at once and waits until that is done. */
void late_replies_stop(void);

#endif
