/*
 * The simulated interface behind its driver, as both lanes serve it: freestanding C, no allocation,
 * no floating point (a double is 64 bits that are stored and compared). The caller provides memory,
 * time and locking.
 */
#ifndef SIMMODEL_H
#define SIMMODEL_H

#include "controlprotocol.h"
#include "simfaults.h"
#include "simjournal.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct SimModel {
    uint32_t plugged;
    uint32_t bus;
    uint32_t generation; /* of the device that is plugged in */
    uint32_t handles;    /* opened so far */
    uint32_t openHandles;
    uint32_t values[VESMORA_SIM_VALUE_COUNT];
    uint8_t firmware[VESMORA_FIRMWARE_VERSION_LENGTH];
    int32_t meters[VESMORA_METER_LEVELS];
    CommandPacket packets[VESMORA_SIM_PACKET_ROOM];
    uint64_t mixer[VESMORA_SIM_MIXER_VALUES];
    SimFaults faults;
    SimJournal journal;
} SimModel;

/* One open handle. It belongs to the device it was opened on: once that is unplugged its commands
 * fail, also when something is plugged in again. */
typedef struct SimHandle {
    uint32_t id;
    uint32_t bus;
    uint32_t generation;
} SimHandle;

/* Input and output may be the same memory. */
typedef struct SimRequest {
    uint32_t code;
    const uint8_t *input;
    uint32_t inputLength;
    uint8_t *output;
    uint32_t outputLength;
    uint32_t time; /* in ms since the simulator began */
} SimRequest;

typedef struct SimReply {
    uint32_t status; /* NTSTATUS */
    uint32_t bytesReturned;
    uint32_t delay; /* in ms, to wait before the requester sees the reply */
} SimReply;

/* `storage` holds the record; it is aligned to 8 bytes and stays the caller's. */
void model_init(SimModel *model, void *storage, uint32_t capacity);

/* Back to a sane device that is not plugged in: defaults, empty record, no faults. Handles that
 * are open stay open. */
void model_reset(SimModel *model);

/* SIM_INVALID_PARAMETER for no identifier or no such bus, SIM_ALREADY_EXISTS when something is
 * plugged in. A device comes up with an empty mixer, its engine running and OTG on; the other
 * values, meters and firmware are what they were. */
uint32_t model_plug(SimModel *model, const VesmoraSimPlug *plug, uint32_t time);

/* SIM_DEVICE_NOT_CONNECTED when nothing is plugged in. */
uint32_t model_unplug(SimModel *model, uint32_t time);

/* SIM_NO_SUCH_FILE when nothing is plugged in on that bus; that alone is not recorded, as no
 * request for a device that does not exist reaches a driver. */
uint32_t model_open(SimModel *model, uint32_t bus, uint32_t access, uint32_t share, uint32_t time,
                    SimHandle *handle);

void model_close(SimModel *model, const SimHandle *handle, uint32_t time);

/* One driver command. Fails with SIM_DEVICE_NOT_CONNECTED after unplugging, else as a fault rule
 * says, else with SIM_INVALID_DEVICE_REQUEST (unknown code, packet kind or opcode),
 * SIM_INFO_LENGTH_MISMATCH (input length), SIM_BUFFER_TOO_SMALL or SIM_INVALID_PARAMETER (other
 * packet contents); a failed command changes nothing. */
SimReply model_request(SimModel *model, const SimHandle *handle, const SimRequest *request);

/* One request to the test-control device; the caller looks at `plugged`, `bus` and `generation`
 * afterwards to make the bus device appear or disappear. Not recorded, except plug and unplug. */
SimReply model_control(SimModel *model, const SimRequest *request);

#ifdef __cplusplus
}
#endif

#endif
