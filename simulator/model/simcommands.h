#ifndef SIMCOMMANDS_H
#define SIMCOMMANDS_H

#include "controlprotocol.h"

#ifdef __cplusplus
extern "C" {
#endif

/* What a command does to the device. */
enum SimAction {
    SIM_READ_VALUE,   /* answers a value */
    SIM_WRITE_VALUE,  /* sets a value to the input */
    SIM_ASSIGN_VALUE, /* sets a value to a constant */
    SIM_TAKE_MIXER,
    SIM_ANSWER_METERS,
    SIM_TAKE_PACKET,
    SIM_ANSWER_VENDOR
};

/* One driver control code. Lengths are in bytes; inputs are exact, outputs at least that long. */
typedef struct SimCommand {
    uint32_t code;
    const char *name; /* the method of the control panel that sends it */
    uint32_t action;  /* enum SimAction */
    uint32_t value;   /* enum VesmoraSimValue, where the action is about one */
    uint32_t constant;
    uint32_t inputLength;
    uint32_t outputLength;
} SimCommand;

/* How a packet's argument, channel and value are used; all other bytes are 0. */
enum SimPacketShape {
    SIM_PLAIN_PACKET,  /* not at all */
    SIM_SWITCH_PACKET, /* argument 0 or 1, channel */
    SIM_VOLUME_PACKET  /* argument VESMORA_VOLUME_VALUE_LENGTH, channel, value */
};

/* One opcode of VESMORA_SEND_PACKET or VESMORA_VENDOR_REQUEST. */
typedef struct SimPacketCommand {
    uint32_t code;
    uint32_t opcode;
    const char *name;
    uint32_t shape; /* enum SimPacketShape */
} SimPacketCommand;

extern const SimCommand sim_commands[];
extern const uint32_t sim_command_count;
extern const SimPacketCommand sim_packet_commands[];
extern const uint32_t sim_packet_command_count;

/* NULL when the driver has no such code. */
const SimCommand *command_find(uint32_t code);

/* NULL when the code takes no such opcode. */
const SimPacketCommand *packet_command_find(uint32_t code, uint32_t opcode);

/* Whether the packet is one the device understands: SIM_SUCCESS, SIM_INVALID_DEVICE_REQUEST for a
 * wrong kind or opcode, SIM_INVALID_PARAMETER for a wrong state, value length or reserved byte. */
uint32_t packet_check(uint32_t code, const CommandPacket *packet);

#ifdef __cplusplus
}
#endif

#endif
