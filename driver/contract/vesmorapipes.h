/*
 * The contract between the control panel and the maker's ASIO driver: two named pipes of the same
 * computer, one for each direction, and what goes through them. Plain C, so that the driver can
 * include the same file. All multi-byte fields are little-endian.
 */
#ifndef VESMORAPIPES_H
#define VESMORAPIPES_H

#ifdef __cplusplus
#include <cstddef>
#include <cstdint>
#else
#include <assert.h>
#include <stddef.h>
#include <stdint.h>
#endif

/* "Pannel" is how both are spelt. */
#define VESMORA_RESET_PIPE L"\\\\.\\pipe\\VesmoraPannelToASIO"  /* the ASIO driver serves it */
#define VESMORA_WINDOW_PIPE L"\\\\.\\pipe\\VesmoraASIOToPannel" /* the panel serves it */

/* The one byte, "1", that tells the ASIO driver to pick up new engine settings. */
#define VESMORA_RESET_SIGNAL 0x31u

/* Of the panel's pipe: each way's buffer and the longest message that is read, in bytes; what a
 * client waits at most that leaves it to the server, in milliseconds. */
#define VESMORA_PIPE_BUFFER_SIZE 65536u
#define VESMORA_PIPE_MESSAGE_LIMIT 1024u
#define VESMORA_PIPE_TIMEOUT 300u

/* The message on VESMORA_WINDOW_PIPE, 20 bytes. What is missing of it counts as 0. */
typedef struct WindowRequest {
    uint32_t loggedOnly[4];
    uint32_t showSettings; /* not 0: bring the settings window to the front */
} WindowRequest;

static_assert(sizeof(WindowRequest) == 20, "WindowRequest");
static_assert(offsetof(WindowRequest, showSettings) == 16, "WindowRequest.showSettings");

#endif
