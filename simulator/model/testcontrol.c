#include "simmodel.h"

#include "bytes.h"
#include "simstatus.h"

static uint32_t set_meters(SimModel *model, const SimRequest *request)
{
    const uint32_t count = request->inputLength / (uint32_t)sizeof(VesmoraSimMeter);
    if (count * sizeof(VesmoraSimMeter) != request->inputLength)
        return SIM_INFO_LENGTH_MISMATCH;
    for (uint32_t i = 0; i < count; ++i) {
        if (bytes_u32(request->input + 8 * i) >= VESMORA_METER_LEVELS)
            return SIM_INVALID_PARAMETER;
    }
    for (uint32_t i = 0; i < count; ++i) {
        VesmoraSimMeter meter;
        bytes_copy(&meter, request->input + 8 * i, sizeof meter);
        model->meters[meter.index] = meter.level;
    }
    return SIM_SUCCESS;
}

static uint32_t set_value(SimModel *model, const VesmoraSimSetting *setting)
{
    if (setting->which >= VESMORA_SIM_VALUE_COUNT)
        return SIM_INVALID_PARAMETER;
    model->values[setting->which] = setting->value;
    return SIM_SUCCESS;
}

static void describe(const SimModel *model, VesmoraSimState *state)
{
    bytes_clear(state, sizeof *state);
    state->plugged = model->plugged;
    state->bus = model->bus;
    bytes_copy(state->values, model->values, sizeof state->values);
    state->openHandles = model->openHandles;
    state->entries = model->journal.entries;
    state->lost = model->journal.lost;
    state->faults = model->faults.ruleCount;
    state->delays = model->faults.delayCount;
    bytes_copy(state->packets, model->packets, sizeof state->packets);
    bytes_copy(state->firmware, model->firmware, sizeof state->firmware);
}

/* Whether the lengths suit; a failure otherwise. */
static uint32_t check_lengths(const SimRequest *request, uint32_t input, uint32_t output)
{
    if (request->inputLength != input)
        return SIM_INFO_LENGTH_MISMATCH;
    return request->outputLength < output ? SIM_BUFFER_TOO_SMALL : SIM_SUCCESS;
}

static uint32_t plug(SimModel *model, const SimRequest *request)
{
    VesmoraSimPlug input;
    const uint32_t status = check_lengths(request, sizeof input, 0);
    if (status != SIM_SUCCESS)
        return status;
    bytes_copy(&input, request->input, sizeof input);
    return model_plug(model, &input, request->time);
}

static uint32_t prepare(SimModel *model, const SimRequest *request)
{
    union {
        VesmoraSimSetting setting;
        VesmoraSimFault fault;
        VesmoraSimDelay delay;
    } input;
    const uint32_t length = request->code == VESMORA_SIM_ADD_FAULT ? sizeof input.fault
        : request->code == VESMORA_SIM_SET_DELAY                   ? sizeof input.delay
                                                                   : sizeof input.setting;
    const uint32_t status = check_lengths(request, length, 0);
    if (status != SIM_SUCCESS)
        return status;
    bytes_copy(&input, request->input, length);
    switch (request->code) {
    case VESMORA_SIM_ADD_FAULT:
        return faults_add(&model->faults, &input.fault);
    case VESMORA_SIM_SET_DELAY:
        return faults_set_delay(&model->faults, &input.delay);
    default:
        return set_value(model, &input.setting);
    }
}

static uint32_t set_firmware(SimModel *model, const SimRequest *request)
{
    const uint32_t status = check_lengths(request, sizeof model->firmware, 0);
    if (status == SIM_SUCCESS)
        bytes_copy(model->firmware, request->input, sizeof model->firmware);
    return status;
}

static uint32_t read_record(const SimModel *model, const SimRequest *request, uint32_t *length)
{
    const uint32_t status = check_lengths(request, sizeof(uint32_t), 0);
    if (status != SIM_SUCCESS)
        return status;
    return journal_read(&model->journal, bytes_u32(request->input), request->output,
                        request->outputLength, length);
}

static uint32_t read_state(const SimModel *model, const SimRequest *request, uint32_t *length)
{
    VesmoraSimState state;
    const uint32_t status = check_lengths(request, 0, sizeof state);
    if (status != SIM_SUCCESS)
        return status;
    describe(model, &state);
    bytes_copy(request->output, &state, sizeof state);
    *length = sizeof state;
    return SIM_SUCCESS;
}

static uint32_t read_mixer(const SimModel *model, const SimRequest *request, uint32_t *length)
{
    const uint32_t status = check_lengths(request, 0, sizeof model->mixer);
    if (status != SIM_SUCCESS)
        return status;
    bytes_copy(request->output, model->mixer, sizeof model->mixer);
    *length = sizeof model->mixer;
    return SIM_SUCCESS;
}

/* The codes that carry nothing. */
static uint32_t perform_plain(SimModel *model, const SimRequest *request)
{
    const uint32_t status = check_lengths(request, 0, 0);
    if (status != SIM_SUCCESS)
        return status;
    switch (request->code) {
    case VESMORA_SIM_UNPLUG:
        return model_unplug(model, request->time);
    case VESMORA_SIM_CLEAR_FAULTS:
        faults_clear(&model->faults);
        return SIM_SUCCESS;
    case VESMORA_SIM_CLEAR_RECORD:
        journal_clear(&model->journal);
        return SIM_SUCCESS;
    default:
        model_reset(model);
        return SIM_SUCCESS;
    }
}

static uint32_t perform(SimModel *model, const SimRequest *request, uint32_t *length)
{
    switch (request->code) {
    case VESMORA_SIM_PLUG:
        return plug(model, request);
    case VESMORA_SIM_SET_METERS:
        return set_meters(model, request);
    case VESMORA_SIM_SET_FIRMWARE:
        return set_firmware(model, request);
    case VESMORA_SIM_SET_VALUE:
    case VESMORA_SIM_ADD_FAULT:
    case VESMORA_SIM_SET_DELAY:
        return prepare(model, request);
    case VESMORA_SIM_READ_RECORD:
        return read_record(model, request, length);
    case VESMORA_SIM_READ_STATE:
        return read_state(model, request, length);
    case VESMORA_SIM_READ_MIXER:
        return read_mixer(model, request, length);
    case VESMORA_SIM_UNPLUG:
    case VESMORA_SIM_CLEAR_FAULTS:
    case VESMORA_SIM_CLEAR_RECORD:
    case VESMORA_SIM_RESET:
        return perform_plain(model, request);
    default:
        return SIM_INVALID_DEVICE_REQUEST;
    }
}

SimReply model_control(SimModel *model, const SimRequest *request)
{
    SimReply reply = {SIM_SUCCESS, 0, 0};
    reply.status = perform(model, request, &reply.bytesReturned);
    return reply;
}
