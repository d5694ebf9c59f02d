#include "simcommands.h"

#include "simstatus.h"

#define READS(code, name, value)                                                                   \
    {                                                                                              \
        code, name, SIM_READ_VALUE, value, 0, 0, 4                                                 \
    }
#define WRITES(code, name, value)                                                                  \
    {                                                                                              \
        code, name, SIM_WRITE_VALUE, value, 0, 4, 0                                                \
    }
#define ASSIGNS(code, name, value, constant)                                                       \
    {                                                                                              \
        code, name, SIM_ASSIGN_VALUE, value, constant, 0, 0                                        \
    }

const SimCommand sim_commands[] = {
    READS(VESMORA_GET_SAMPLE_RATE, "getSampleRate", VESMORA_SIM_SAMPLE_RATE),
    WRITES(VESMORA_SET_SAMPLE_RATE, "setSampleRate", VESMORA_SIM_SAMPLE_RATE),
    READS(VESMORA_GET_BUFFER_SIZE, "getBufferSize", VESMORA_SIM_BUFFER_SIZE),
    WRITES(VESMORA_SET_BUFFER_SIZE, "setBufferSize", VESMORA_SIM_BUFFER_SIZE),
    READS(VESMORA_GET_USB_LATENCY, "getUsbLatency", VESMORA_SIM_USB_LATENCY),
    WRITES(VESMORA_SET_USB_LATENCY, "setUsbLatency", VESMORA_SIM_USB_LATENCY),
    READS(VESMORA_GET_DEVICE_PID, "getDevicePid", VESMORA_SIM_IDENTIFIER),
    WRITES(VESMORA_SET_WDM_CHANNEL_COUNT, "setWdmChannelCount", VESMORA_SIM_WDM_CHANNELS),
    ASSIGNS(VESMORA_STOP_AUDIO, "stopAudio", VESMORA_SIM_ENGINE, 0),
    ASSIGNS(VESMORA_INIT_AUDIO, "initAudio", VESMORA_SIM_ENGINE, 1),
    ASSIGNS(VESMORA_RESTART_AUDIO, "restartAudio", VESMORA_SIM_ENGINE, 1),
    ASSIGNS(VESMORA_ENABLE_USB_SLOW_MODE, "enableUsbSlowMode", VESMORA_SIM_SLOW_MODE, 1),
    ASSIGNS(VESMORA_DISABLE_USB_SLOW_MODE, "disableUsbSlowMode", VESMORA_SIM_SLOW_MODE, 0),
    {VESMORA_SEND_MIXER_BLOCK, "sendMixerBlock", SIM_TAKE_MIXER, 0, 0, sizeof(MixerBlock), 0},
    {VESMORA_READ_METER_DATA, "readMeterData", SIM_ANSWER_METERS, 0, 0, 0, sizeof(MeterRecord)},
    {VESMORA_SEND_PACKET, "sendPacket", SIM_TAKE_PACKET, 0, 0, sizeof(CommandPacket), 0},
    {VESMORA_VENDOR_REQUEST, "vendorRequest", SIM_ANSWER_VENDOR, 0, 0, sizeof(CommandPacket),
     sizeof(VendorReply)},
};

const uint32_t sim_command_count = sizeof sim_commands / sizeof sim_commands[0];

const SimPacketCommand sim_packet_commands[] = {
    {VESMORA_SEND_PACKET, VESMORA_OPCODE_OUT_VOLUME, "setOutVolume", SIM_VOLUME_PACKET},
    {VESMORA_SEND_PACKET, VESMORA_OPCODE_MIC_VOLUME, "setMicVolume", SIM_VOLUME_PACKET},
    {VESMORA_SEND_PACKET, VESMORA_OPCODE_MIC_20DB, "setMic20dB", SIM_SWITCH_PACKET},
    {VESMORA_SEND_PACKET, VESMORA_OPCODE_MIC_48V, "setMic48V", SIM_SWITCH_PACKET},
    {VESMORA_SEND_PACKET, VESMORA_OPCODE_MIC_INSTRUMENT, "switchMicInstruction", SIM_SWITCH_PACKET},
    {VESMORA_SEND_PACKET, VESMORA_OPCODE_OTG_OFF, "setOtgOff", SIM_PLAIN_PACKET},
    {VESMORA_SEND_PACKET, VESMORA_OPCODE_OTG_ON, "setOtgOn", SIM_PLAIN_PACKET},
    {VESMORA_SEND_PACKET, VESMORA_OPCODE_UPGRADE_FIRMWARE, "upgradeFirmware", SIM_PLAIN_PACKET},
    {VESMORA_VENDOR_REQUEST, VESMORA_OPCODE_FIRMWARE_VERSION, "getFirmwareVersion",
     SIM_PLAIN_PACKET},
};

#define PACKET_COMMANDS (sizeof sim_packet_commands / sizeof sim_packet_commands[0])
static_assert(PACKET_COMMANDS <= VESMORA_SIM_PACKET_ROOM, "VESMORA_SIM_PACKET_ROOM");

const uint32_t sim_packet_command_count = PACKET_COMMANDS;

const SimCommand *command_find(uint32_t code)
{
    for (uint32_t i = 0; i < sim_command_count; ++i) {
        if (sim_commands[i].code == code)
            return &sim_commands[i];
    }
    return NULL;
}

const SimPacketCommand *packet_command_find(uint32_t code, uint32_t opcode)
{
    for (uint32_t i = 0; i < sim_packet_command_count; ++i) {
        if (sim_packet_commands[i].code == code && sim_packet_commands[i].opcode == opcode)
            return &sim_packet_commands[i];
    }
    return NULL;
}

static int has_shape(const CommandPacket *packet, uint32_t shape)
{
    const int hasValue = packet->valueLow != 0 || packet->valueHigh != 0;
    switch (shape) {
    case SIM_VOLUME_PACKET:
        return packet->argument == VESMORA_VOLUME_VALUE_LENGTH;
    case SIM_SWITCH_PACKET:
        return packet->argument <= 1 && !hasValue;
    default:
        return packet->argument == 0 && packet->channel == 0 && !hasValue;
    }
}

uint32_t packet_check(uint32_t code, const CommandPacket *packet)
{
    const SimPacketCommand *command = packet_command_find(code, packet->opcode);
    if (packet->kind != VESMORA_PACKET_KIND || !command)
        return SIM_INVALID_DEVICE_REQUEST;
    if (packet->reserved != 0 || !has_shape(packet, command->shape))
        return SIM_INVALID_PARAMETER;
    for (uint32_t i = 0; i < sizeof packet->padding; ++i) {
        if (packet->padding[i] != 0)
            return SIM_INVALID_PARAMETER;
    }
    return SIM_SUCCESS;
}
