/*
 * The test-control device of the simulated interface: what plugs and unplugs it, prepares its
 * answers and failures, and reads what it was asked. Plain C, shared by both ends.
 */
#ifndef CONTROLPROTOCOL_H
#define CONTROLPROTOCOL_H

#include "vesmoracontract.h"

/* The device is "\\.\VesmoraSimControl". It exists as long as the simulator runs. */
#define VESMORA_SIM_DEVICE_NAME "VesmoraSimControl"

/* METHOD_BUFFERED, FILE_ANY_ACCESS; a device type of its own keeps it apart from the driver's. */
#define VESMORA_SIM_DEVICE_TYPE 0x8E55u
#define VESMORA_SIM_CODE(function) ((VESMORA_SIM_DEVICE_TYPE << 16) | ((function) << 2))

#define VESMORA_SIM_PLUG VESMORA_SIM_CODE(0x900u)         /* in: VesmoraSimPlug */
#define VESMORA_SIM_UNPLUG VESMORA_SIM_CODE(0x901u)       /* neither */
#define VESMORA_SIM_SET_METERS VESMORA_SIM_CODE(0x902u)   /* in: VesmoraSimMeter[] */
#define VESMORA_SIM_SET_FIRMWARE VESMORA_SIM_CODE(0x903u) /* in: 10 bytes */
#define VESMORA_SIM_SET_VALUE VESMORA_SIM_CODE(0x904u)    /* in: VesmoraSimSetting */
#define VESMORA_SIM_ADD_FAULT VESMORA_SIM_CODE(0x905u)    /* in: VesmoraSimFault */
#define VESMORA_SIM_SET_DELAY VESMORA_SIM_CODE(0x906u)    /* in: VesmoraSimDelay */
#define VESMORA_SIM_CLEAR_FAULTS VESMORA_SIM_CODE(0x907u) /* neither; delays go too */
#define VESMORA_SIM_CLEAR_RECORD VESMORA_SIM_CODE(0x908u) /* neither */
#define VESMORA_SIM_READ_RECORD VESMORA_SIM_CODE(0x909u)  /* in: u32 number, out: a page */
#define VESMORA_SIM_READ_STATE VESMORA_SIM_CODE(0x90Au)   /* out: VesmoraSimState */
#define VESMORA_SIM_READ_MIXER VESMORA_SIM_CODE(0x90Bu)   /* out: MixerBlock */
#define VESMORA_SIM_RESET VESMORA_SIM_CODE(0x90Cu)        /* neither */

/* The values that driver commands read and write, and VESMORA_SIM_SET_VALUE prepares. */
enum VesmoraSimValue {
    VESMORA_SIM_IDENTIFIER,
    VESMORA_SIM_SAMPLE_RATE,
    VESMORA_SIM_BUFFER_SIZE,
    VESMORA_SIM_USB_LATENCY,
    VESMORA_SIM_WDM_CHANNELS,
    VESMORA_SIM_SLOW_MODE, /* 0 or 1 */
    VESMORA_SIM_ENGINE,    /* 0 stopped, 1 running */
    VESMORA_SIM_OTG,       /* 0 or 1 */
    VESMORA_SIM_VALUE_COUNT
};

typedef struct VesmoraSimPlug {
    uint32_t identifier; /* the product identifier it answers; not 0 */
    uint32_t bus;        /* 0 to VESMORA_BUS_COUNT - 1 */
} VesmoraSimPlug;

typedef struct VesmoraSimMeter {
    uint32_t index; /* 0 to VESMORA_METER_LEVELS - 1 */
    int32_t level;
} VesmoraSimMeter;

typedef struct VesmoraSimSetting {
    uint32_t which; /* enum VesmoraSimValue */
    uint32_t value;
} VesmoraSimSetting;

/* A fault with this code makes opens of the bus device fail. */
#define VESMORA_SIM_OPEN_CODE 0u
#define VESMORA_SIM_ANY_OPCODE 0xFFFFFFFFu
#define VESMORA_SIM_FOR_EVER 0u

/* Several rules can be set at once; each counts every request it matches that reaches a plugged-in
 * device, and of those that fire on one request the one added first decides. */
typedef struct VesmoraSimFault {
    uint32_t code;   /* a driver control code, or VESMORA_SIM_OPEN_CODE */
    uint32_t opcode; /* of the packet, or VESMORA_SIM_ANY_OPCODE */
    uint32_t nth;    /* the first request to fail, 1 being the next */
    uint32_t count;  /* how many fail, or VESMORA_SIM_FOR_EVER */
    uint32_t status; /* the NTSTATUS they fail with */
} VesmoraSimFault;

#define VESMORA_SIM_LONGEST_DELAY 60000u

/* The device acts on a delayed request at once and answers late. */
typedef struct VesmoraSimDelay {
    uint32_t code;         /* a driver control code */
    uint32_t opcode;       /* of the packet, or VESMORA_SIM_ANY_OPCODE */
    uint32_t milliseconds; /* 0 removes the delay */
} VesmoraSimDelay;

enum VesmoraSimKind {
    VESMORA_SIM_KIND_OPEN,
    VESMORA_SIM_KIND_CLOSE,
    VESMORA_SIM_KIND_REQUEST,
    VESMORA_SIM_KIND_PLUG,
    VESMORA_SIM_KIND_UNPLUG
};

/* Of an input that is longer only this much is recorded. */
#define VESMORA_SIM_LONGEST_INPUT 256u

/* One entry of the record; payloadLength bytes and padding up to size follow it. The payload is the
 * request's input; for a mixer block of the right length it is VesmoraSimChange[]. */
typedef struct VesmoraSimEntry {
    uint32_t size;   /* of the whole entry, a multiple of 8 */
    uint32_t number; /* 1, 2, 3... since the record was last cleared */
    uint32_t time;   /* in ms since the simulator began */
    uint32_t kind;   /* enum VesmoraSimKind */
    uint32_t bus;
    uint32_t handle; /* 1, 2, 3... in the order of opening; 0 for plug and unplug */
    uint32_t access; /* opens only: the desired access, 0 where it is not known */
    uint32_t share;  /* opens only: the share mode */
    uint32_t code;
    uint32_t inputLength;
    uint32_t outputLength;
    uint32_t status; /* NTSTATUS */
    uint32_t answer; /* the value a successful read returned; a plug's identifier */
    uint32_t payloadLength;
} VesmoraSimEntry;

/* A mixer entry that a request changes, as a flat index into the block's doubles. */
typedef struct VesmoraSimChange {
    uint32_t index;
    uint32_t reserved;
    uint64_t value; /* the bits of the double */
} VesmoraSimChange;

/* The head of a page of the record; `count` whole entries follow it. */
typedef struct VesmoraSimPage {
    uint32_t count;
    uint32_t lost; /* entries that found no room in the record, newer than all it holds */
} VesmoraSimPage;

#define VESMORA_SIM_MIXER_VALUES (VESMORA_MIXER_ROWS * VESMORA_MIXER_COLUMNS + VESMORA_OUTPUT_GAINS)
/* A page buffer of this size holds at least one entry, whatever it is. */
#define VESMORA_SIM_LONGEST_PAGE                                                                   \
    (sizeof(VesmoraSimPage) + sizeof(VesmoraSimEntry)                                              \
     + VESMORA_SIM_MIXER_VALUES * sizeof(VesmoraSimChange))

/* More than there are opcodes. */
#define VESMORA_SIM_PACKET_ROOM 32

typedef struct VesmoraSimState {
    uint32_t plugged; /* 0 or 1 */
    uint32_t bus;     /* of what is plugged in, or was last */
    uint32_t values[VESMORA_SIM_VALUE_COUNT];
    uint32_t openHandles; /* on bus devices, also those of a device that was unplugged */
    uint32_t entries;     /* in the record */
    uint32_t lost;
    uint32_t faults; /* rules not used up yet */
    uint32_t delays;
    /* The last packet the device took of each opcode; kind is 0 where there was none. */
    CommandPacket packets[VESMORA_SIM_PACKET_ROOM];
    uint8_t firmware[VESMORA_FIRMWARE_VERSION_LENGTH];
} VesmoraSimState;

static_assert(sizeof(VesmoraSimEntry) == 56, "VesmoraSimEntry");
static_assert(sizeof(VesmoraSimChange) == 16, "VesmoraSimChange");
static_assert(sizeof(MixerBlock) / 8 == VESMORA_SIM_MIXER_VALUES, "VESMORA_SIM_MIXER_VALUES");

#endif
