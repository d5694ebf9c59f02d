/*
 * The contract between the control panel and the kernel-mode audio driver: device names, control
 * codes and the memory layout of every buffer that crosses the border. Plain C, so that the driver
 * side can include the same file. All multi-byte fields are little-endian.
 */
#ifndef VESMORACONTRACT_H
#define VESMORACONTRACT_H

#ifdef __cplusplus
#include <cstddef>
#include <cstdint>
#else
#include <assert.h>
#include <stddef.h>
#include <stdint.h>
#endif

/* Device objects are called by this name and a number, from 0 on: VesmoraAudioBus0. */
#define VESMORA_BUS_NAME "VesmoraAudioBus"
#define VESMORA_BUS_COUNT 16

/* Control codes: device type 0xFFDC, METHOD_BUFFERED, FILE_ANY_ACCESS; the function differs. */
#define VESMORA_DEVICE_TYPE 0xFFDCu
#define VESMORA_CONTROL_CODE(function) ((VESMORA_DEVICE_TYPE << 16) | ((function) << 2))

/* What each code carries besides itself. */
#define VESMORA_GET_SAMPLE_RATE VESMORA_CONTROL_CODE(0x808u)       /* out: u32, Hz */
#define VESMORA_SET_SAMPLE_RATE VESMORA_CONTROL_CODE(0x80Eu)       /* in: u32, Hz */
#define VESMORA_SEND_MIXER_BLOCK VESMORA_CONTROL_CODE(0x810u)      /* in: MixerBlock */
#define VESMORA_SET_BUFFER_SIZE VESMORA_CONTROL_CODE(0x811u)       /* in: u32, samples */
#define VESMORA_GET_BUFFER_SIZE VESMORA_CONTROL_CODE(0x812u)       /* out: u32, samples */
#define VESMORA_GET_USB_LATENCY VESMORA_CONTROL_CODE(0x813u)       /* out: u32, USB frames */
#define VESMORA_SET_USB_LATENCY VESMORA_CONTROL_CODE(0x814u)       /* in: u32, USB frames */
#define VESMORA_READ_METER_DATA VESMORA_CONTROL_CODE(0x81Du)       /* out: MeterRecord */
#define VESMORA_STOP_AUDIO VESMORA_CONTROL_CODE(0x81Eu)            /* neither */
#define VESMORA_INIT_AUDIO VESMORA_CONTROL_CODE(0x81Fu)            /* neither */
#define VESMORA_RESTART_AUDIO VESMORA_CONTROL_CODE(0x820u)         /* neither */
#define VESMORA_GET_DEVICE_PID VESMORA_CONTROL_CODE(0x821u)        /* out: u32, product */
#define VESMORA_SET_WDM_CHANNEL_COUNT VESMORA_CONTROL_CODE(0x822u) /* in: u32, channels */
#define VESMORA_ENABLE_USB_SLOW_MODE VESMORA_CONTROL_CODE(0x824u)  /* neither */
#define VESMORA_DISABLE_USB_SLOW_MODE VESMORA_CONTROL_CODE(0x825u) /* neither */
#define VESMORA_SEND_PACKET VESMORA_CONTROL_CODE(0x827u)           /* in: CommandPacket */
#define VESMORA_VENDOR_REQUEST                                                                     \
    VESMORA_CONTROL_CODE(0x828u) /* in: CommandPacket, out: VendorReply */

/* Product identifiers, the answers to VESMORA_GET_DEVICE_PID; 0 means that none is connected. */
#define VESMORA_PID_RX1 1u
#define VESMORA_PID_RX2 2u
#define VESMORA_PID_RM 15u

/* CommandPacket byte 0 and the opcodes of byte 1. */
#define VESMORA_PACKET_KIND 0x01u
#define VESMORA_OPCODE_OUT_VOLUME 0x03u
#define VESMORA_OPCODE_MIC_VOLUME 0x07u
#define VESMORA_OPCODE_MIC_20DB 0x5Au
#define VESMORA_OPCODE_MIC_48V 0x5Bu
#define VESMORA_OPCODE_OTG_OFF 0x5Eu
#define VESMORA_OPCODE_OTG_ON 0x5Fu
#define VESMORA_OPCODE_UPGRADE_FIRMWARE 0x60u
#define VESMORA_OPCODE_MIC_INSTRUMENT 0x64u
#define VESMORA_OPCODE_FIRMWARE_VERSION 0x65u
/* The volume opcodes carry their value's length, in bytes, where the switches carry a state. */
#define VESMORA_VOLUME_VALUE_LENGTH 0x02u

/* Mixer geometry: rows are destination channels, columns are source channels. */
#define VESMORA_MIXER_ROWS 256
#define VESMORA_MIXER_COLUMNS 32
#define VESMORA_OUTPUT_GAINS 96
/* Output gain k belongs to matrix row VESMORA_FIRST_OUTPUT_ROW + k. */
#define VESMORA_FIRST_OUTPUT_ROW 64

#define VESMORA_METER_LEVELS 192
#define VESMORA_FIRMWARE_VERSION_LENGTH 10

/* The request of VESMORA_SEND_PACKET and VESMORA_VENDOR_REQUEST, 37 bytes, always sent whole. */
typedef struct CommandPacket {
    uint8_t kind;      /* VESMORA_PACKET_KIND */
    uint8_t opcode;    /* VESMORA_OPCODE_... */
    uint8_t reserved;  /* 0 */
    uint8_t argument;  /* a switch's state, 0 or 1; or VESMORA_VOLUME_VALUE_LENGTH */
    uint8_t channel;   /* 1-based, or 0 */
    uint8_t valueLow;  /* low byte of a signed 16-bit value */
    uint8_t valueHigh; /* its high byte */
    uint8_t padding[30];
} CommandPacket;

/* The reply of VESMORA_VENDOR_REQUEST; of a firmware version only bytes 0 to 9 count. */
typedef struct VendorReply {
    uint8_t bytes[32];
} VendorReply;

/* Routing and gains, 66304 bytes: linear gains, 0.0 = silence, 1.0 = unity. Always sent whole. */
typedef struct MixerBlock {
    double matrix[VESMORA_MIXER_ROWS][VESMORA_MIXER_COLUMNS];
    double outputGains[VESMORA_OUTPUT_GAINS];
} MixerBlock;

/* Signed peak values, 768 bytes; full scale is +-2147483647. */
typedef struct MeterRecord {
    int32_t levels[VESMORA_METER_LEVELS];
} MeterRecord;

static_assert(VESMORA_GET_SAMPLE_RATE == 0xFFDC2020u, "VESMORA_GET_SAMPLE_RATE");
static_assert(VESMORA_VENDOR_REQUEST == 0xFFDC20A0u, "VESMORA_VENDOR_REQUEST");
static_assert(sizeof(CommandPacket) == 37, "CommandPacket");
static_assert(offsetof(CommandPacket, argument) == 3, "CommandPacket.argument");
static_assert(offsetof(CommandPacket, channel) == 4, "CommandPacket.channel");
static_assert(offsetof(CommandPacket, valueLow) == 5, "CommandPacket.valueLow");
static_assert(offsetof(CommandPacket, padding) == 7, "CommandPacket.padding");
static_assert(sizeof(VendorReply) == 32, "VendorReply");
static_assert(sizeof(double) == 8, "MixerBlock holds IEEE-754 doubles");
static_assert(sizeof(MixerBlock) == 66304, "MixerBlock");
static_assert(offsetof(MixerBlock, outputGains) == 65536, "MixerBlock.outputGains");
static_assert(sizeof(MeterRecord) == 768, "MeterRecord");

#endif
