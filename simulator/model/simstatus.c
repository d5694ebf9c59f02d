#include "simstatus.h"

#define UNKNOWN_STATUS_ERROR 317u
/* The NTSTATUS range whose lower half is a Win32 error as it is. */
#define WIN32_FACILITY 0xC0070000u

const SimStatus sim_statuses[] = {
    {SIM_SUCCESS, 0, "success"},
    {SIM_INVALID_DEVICE_REQUEST, 1, "invalid-function"},
    {SIM_NO_SUCH_FILE, 2, "file-not-found"},
    {SIM_ACCESS_DENIED, 5, "access-denied"},
    {0xC0000008u, 6, "invalid-handle"},
    {0xC0000017u, 8, "not-enough-memory"},
    {0xC00000A3u, 21, "not-ready"},
    {0xC0000184u, 22, "bad-command"},
    {SIM_INFO_LENGTH_MISMATCH, 24, "bad-length"},
    {SIM_UNSUCCESSFUL, 31, "gen-failure"},
    {0xC0000043u, 32, "sharing-violation"},
    {0xC00000BBu, 50, "not-supported"},
    {SIM_INVALID_PARAMETER, 87, "invalid-parameter"},
    {0xC00000B5u, 121, "timeout"},
    {SIM_BUFFER_TOO_SMALL, 122, "insufficient-buffer"},
    {0x80000011u, 170, "busy"},
    {SIM_ALREADY_EXISTS, 183, "already-exists"},
    {0xC000000Eu, 433, "no-such-device"},
    {0xC0000120u, 995, "operation-aborted"},
    {0xC0000185u, 1117, "io-device"},
    {SIM_DEVICE_NOT_CONNECTED, 1167, "not-connected"},
    {SIM_INSUFFICIENT_RESOURCES, 1450, "no-resources"},
};

const uint32_t sim_status_count = sizeof sim_statuses / sizeof sim_statuses[0];

uint32_t status_to_error(uint32_t status)
{
    for (uint32_t i = 0; i < sim_status_count; ++i) {
        if (sim_statuses[i].status == status)
            return sim_statuses[i].error;
    }
    return (status & 0xFFFF0000u) == WIN32_FACILITY ? status & 0xFFFFu : UNKNOWN_STATUS_ERROR;
}

uint32_t status_from_error(uint32_t error)
{
    for (uint32_t i = 0; i < sim_status_count; ++i) {
        if (sim_statuses[i].error == error)
            return sim_statuses[i].status;
    }
    return WIN32_FACILITY | (error & 0xFFFFu);
}

const char *status_name(uint32_t error)
{
    for (uint32_t i = 0; i < sim_status_count; ++i) {
        if (sim_statuses[i].error == error)
            return sim_statuses[i].name;
    }
    return NULL;
}
