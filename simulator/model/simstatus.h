#ifndef SIMSTATUS_H
#define SIMSTATUS_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* NTSTATUS values; their own names would collide with the system's macros. */
#define SIM_SUCCESS 0x00000000u
#define SIM_UNSUCCESSFUL 0xC0000001u
#define SIM_INFO_LENGTH_MISMATCH 0xC0000004u
#define SIM_INVALID_PARAMETER 0xC000000Du
#define SIM_NO_SUCH_FILE 0xC000000Fu
#define SIM_INVALID_DEVICE_REQUEST 0xC0000010u
#define SIM_ACCESS_DENIED 0xC0000022u
#define SIM_BUFFER_TOO_SMALL 0xC0000023u
#define SIM_ALREADY_EXISTS 0xC0000035u
#define SIM_DEVICE_NOT_CONNECTED 0xC000009Du
#define SIM_INSUFFICIENT_RESOURCES 0xC000009Au

/* One failure under its three names. */
typedef struct SimStatus {
    uint32_t status; /* NTSTATUS */
    uint32_t error;  /* Win32 */
    const char *name;
} SimStatus;

/* All failures with a name, SIM_SUCCESS first. */
extern const SimStatus sim_statuses[];
extern const uint32_t sim_status_count;

/* The Win32 error that Windows makes of an NTSTATUS; 317 (no such message) when it is unknown. */
uint32_t status_to_error(uint32_t status);

/* An NTSTATUS that Windows turns into the given Win32 error, which is at most 0xFFFF. */
uint32_t status_from_error(uint32_t error);

/* The short name of a Win32 error, or NULL when it has none. */
const char *status_name(uint32_t error);

#ifdef __cplusplus
}
#endif

#endif
