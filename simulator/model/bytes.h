#ifndef BYTES_H
#define BYTES_H

#include <stdint.h>

/* Little-endian access to buffers of any alignment, without a C library. */

static inline void bytes_copy(void *to, const void *from, uint32_t length)
{
    uint8_t *target = (uint8_t *)to;
    const uint8_t *source = (const uint8_t *)from;
    for (uint32_t i = 0; i < length; ++i)
        target[i] = source[i];
}

static inline void bytes_clear(void *bytes, uint32_t length)
{
    uint8_t *target = (uint8_t *)bytes;
    for (uint32_t i = 0; i < length; ++i)
        target[i] = 0;
}

static inline uint32_t bytes_u32(const uint8_t *bytes)
{
    return (uint32_t)bytes[0] | (uint32_t)bytes[1] << 8 | (uint32_t)bytes[2] << 16
        | (uint32_t)bytes[3] << 24;
}

static inline uint64_t bytes_u64(const uint8_t *bytes)
{
    return (uint64_t)bytes_u32(bytes) | (uint64_t)bytes_u32(bytes + 4) << 32;
}

static inline void bytes_put_u32(uint8_t *bytes, uint32_t value)
{
    for (uint32_t i = 0; i < 4; ++i)
        bytes[i] = (uint8_t)(value >> (8 * i));
}

#endif
