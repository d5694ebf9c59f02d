#include "simmodel.h"

#include "bytes.h"
#include "simcommands.h"
#include "simstatus.h"

static const uint8_t defaultFirmware[VESMORA_FIRMWARE_VERSION_LENGTH] = {'2', '0', '2', '5', '0',
                                                                         '9', '3', '0', '0', '1'};

void model_init(SimModel *model, void *storage, uint32_t capacity)
{
    bytes_clear(model, sizeof *model);
    journal_init(&model->journal, storage, capacity);
    model_reset(model);
}

void model_reset(SimModel *model)
{
    model->plugged = 0;
    bytes_clear(model->values, sizeof model->values);
    model->values[VESMORA_SIM_SAMPLE_RATE] = 44100;
    model->values[VESMORA_SIM_BUFFER_SIZE] = 256;
    model->values[VESMORA_SIM_USB_LATENCY] = 8;
    model->values[VESMORA_SIM_WDM_CHANNELS] = 2;
    model->values[VESMORA_SIM_ENGINE] = 1;
    model->values[VESMORA_SIM_OTG] = 1;
    bytes_copy(model->firmware, defaultFirmware, sizeof model->firmware);
    bytes_clear(model->meters, sizeof model->meters);
    bytes_clear(model->packets, sizeof model->packets);
    bytes_clear(model->mixer, sizeof model->mixer);
    faults_clear(&model->faults);
    journal_clear(&model->journal);
}

static VesmoraSimEntry entry_of(uint32_t kind, uint32_t time, uint32_t bus)
{
    VesmoraSimEntry entry;
    bytes_clear(&entry, sizeof entry);
    entry.kind = kind;
    entry.time = time;
    entry.bus = bus;
    return entry;
}

uint32_t model_plug(SimModel *model, const VesmoraSimPlug *plug, uint32_t time)
{
    if (plug->identifier == 0 || plug->bus >= VESMORA_BUS_COUNT)
        return SIM_INVALID_PARAMETER;
    if (model->plugged)
        return SIM_ALREADY_EXISTS;
    model->plugged = 1;
    model->bus = plug->bus;
    ++model->generation;
    model->values[VESMORA_SIM_IDENTIFIER] = plug->identifier;
    model->values[VESMORA_SIM_ENGINE] = 1;
    model->values[VESMORA_SIM_OTG] = 1;
    bytes_clear(model->packets, sizeof model->packets);
    bytes_clear(model->mixer, sizeof model->mixer);

    const VesmoraSimEntry entry = entry_of(VESMORA_SIM_KIND_PLUG, time, plug->bus);
    journal_begin(&model->journal, &entry);
    journal_end(&model->journal, SIM_SUCCESS, plug->identifier);
    return SIM_SUCCESS;
}

uint32_t model_unplug(SimModel *model, uint32_t time)
{
    if (!model->plugged)
        return SIM_DEVICE_NOT_CONNECTED;
    model->plugged = 0;
    const VesmoraSimEntry entry = entry_of(VESMORA_SIM_KIND_UNPLUG, time, model->bus);
    journal_begin(&model->journal, &entry);
    journal_end(&model->journal, SIM_SUCCESS, model->values[VESMORA_SIM_IDENTIFIER]);
    model->values[VESMORA_SIM_IDENTIFIER] = 0;
    return SIM_SUCCESS;
}

uint32_t model_open(SimModel *model, uint32_t bus, uint32_t access, uint32_t share, uint32_t time,
                    SimHandle *handle)
{
    if (!model->plugged || bus != model->bus)
        return SIM_NO_SUCH_FILE;
    const uint32_t status =
        faults_count(&model->faults, VESMORA_SIM_OPEN_CODE, VESMORA_SIM_ANY_OPCODE);
    VesmoraSimEntry entry = entry_of(VESMORA_SIM_KIND_OPEN, time, bus);
    entry.access = access;
    entry.share = share;
    if (status == SIM_SUCCESS) {
        handle->id = ++model->handles;
        handle->bus = bus;
        handle->generation = model->generation;
        ++model->openHandles;
        entry.handle = handle->id;
    }
    journal_begin(&model->journal, &entry);
    journal_end(&model->journal, status, 0);
    return status;
}

void model_close(SimModel *model, const SimHandle *handle, uint32_t time)
{
    --model->openHandles;
    VesmoraSimEntry entry = entry_of(VESMORA_SIM_KIND_CLOSE, time, handle->bus);
    entry.handle = handle->id;
    journal_begin(&model->journal, &entry);
    journal_end(&model->journal, SIM_SUCCESS, 0);
}

static int is_mixer_block(const SimRequest *request)
{
    return request->code == VESMORA_SEND_MIXER_BLOCK && request->inputLength == sizeof(MixerBlock);
}

static void record_mixer_changes(SimModel *model, const uint8_t *block)
{
    for (uint32_t i = 0; i < VESMORA_SIM_MIXER_VALUES; ++i) {
        const VesmoraSimChange change = {i, 0, bytes_u64(block + 8 * i)};
        if (change.value != model->mixer[i])
            journal_add(&model->journal, &change, sizeof change);
    }
}

/* Before anything is answered: the output may lie in the same memory as the input. */
static void begin_request(SimModel *model, const SimHandle *handle, const SimRequest *request)
{
    VesmoraSimEntry entry = entry_of(VESMORA_SIM_KIND_REQUEST, request->time, handle->bus);
    entry.handle = handle->id;
    entry.code = request->code;
    entry.inputLength = request->inputLength;
    entry.outputLength = request->outputLength;
    journal_begin(&model->journal, &entry);
    if (is_mixer_block(request)) {
        record_mixer_changes(model, request->input);
        return;
    }
    const uint32_t length = request->inputLength;
    journal_add(&model->journal, request->input,
                length < VESMORA_SIM_LONGEST_INPUT ? length : VESMORA_SIM_LONGEST_INPUT);
}

static void take_mixer(SimModel *model, const uint8_t *block)
{
    for (uint32_t i = 0; i < VESMORA_SIM_MIXER_VALUES; ++i)
        model->mixer[i] = bytes_u64(block + 8 * i);
}

static uint32_t take_packet(SimModel *model, const SimRequest *request)
{
    CommandPacket packet;
    bytes_copy(&packet, request->input, sizeof packet);
    const uint32_t status = packet_check(request->code, &packet);
    if (status != SIM_SUCCESS)
        return status;
    const SimPacketCommand *command = packet_command_find(request->code, packet.opcode);
    model->packets[command - sim_packet_commands] = packet;
    if (packet.opcode == VESMORA_OPCODE_OTG_OFF)
        model->values[VESMORA_SIM_OTG] = 0;
    else if (packet.opcode == VESMORA_OPCODE_OTG_ON)
        model->values[VESMORA_SIM_OTG] = 1;
    return SIM_SUCCESS;
}

/* The firmware version is all that can be asked for; packet_check() let nothing else through. */
static uint32_t answer_vendor(SimModel *model, const SimRequest *request)
{
    const uint32_t status = take_packet(model, request);
    if (status == SIM_SUCCESS) {
        bytes_clear(request->output, sizeof(VendorReply));
        bytes_copy(request->output, model->firmware, sizeof model->firmware);
    }
    return status;
}

static uint32_t perform(SimModel *model, const SimCommand *command, const SimRequest *request)
{
    switch (command->action) {
    case SIM_READ_VALUE:
        bytes_put_u32(request->output, model->values[command->value]);
        return SIM_SUCCESS;
    case SIM_WRITE_VALUE:
        model->values[command->value] = bytes_u32(request->input);
        return SIM_SUCCESS;
    case SIM_ASSIGN_VALUE:
        model->values[command->value] = command->constant;
        return SIM_SUCCESS;
    case SIM_TAKE_MIXER:
        take_mixer(model, request->input);
        return SIM_SUCCESS;
    case SIM_ANSWER_METERS:
        bytes_copy(request->output, model->meters, sizeof model->meters);
        return SIM_SUCCESS;
    case SIM_TAKE_PACKET:
        return take_packet(model, request);
    default:
        return answer_vendor(model, request);
    }
}

static uint32_t opcode_of(const SimRequest *request)
{
    const int isPacket =
        request->code == VESMORA_SEND_PACKET || request->code == VESMORA_VENDOR_REQUEST;
    return isPacket && request->inputLength >= 2 ? request->input[1] : VESMORA_SIM_ANY_OPCODE;
}

static uint32_t check(SimModel *model, const SimHandle *handle, const SimCommand *command,
                      const SimRequest *request)
{
    if (!model->plugged || handle->generation != model->generation)
        return SIM_DEVICE_NOT_CONNECTED;
    const uint32_t fault = faults_count(&model->faults, request->code, opcode_of(request));
    if (fault != SIM_SUCCESS)
        return fault;
    if (!command)
        return SIM_INVALID_DEVICE_REQUEST;
    if (request->inputLength != command->inputLength)
        return SIM_INFO_LENGTH_MISMATCH;
    if (request->outputLength < command->outputLength)
        return SIM_BUFFER_TOO_SMALL;
    return SIM_SUCCESS;
}

SimReply model_request(SimModel *model, const SimHandle *handle, const SimRequest *request)
{
    const SimCommand *command = command_find(request->code);
    SimReply reply = {SIM_SUCCESS, 0, 0};
    uint32_t answer = 0;

    begin_request(model, handle, request);
    reply.status = check(model, handle, command, request);
    if (reply.status != SIM_DEVICE_NOT_CONNECTED)
        reply.delay = faults_delay(&model->faults, request->code, opcode_of(request));
    if (reply.status == SIM_SUCCESS)
        reply.status = perform(model, command, request);
    if (reply.status == SIM_SUCCESS) {
        reply.bytesReturned = command->outputLength;
        if (command->action == SIM_READ_VALUE)
            answer = model->values[command->value];
    }
    journal_end(&model->journal, reply.status, answer);
    return reply;
}
