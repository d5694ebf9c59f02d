#include "simfaults.h"

#include "simstatus.h"

/* Warnings (2) and errors (3), as the top two bits of an NTSTATUS. */
static int is_failure(uint32_t status)
{
    return status >> 30 >= 2;
}

static int matches(uint32_t ruleCode, uint32_t ruleOpcode, uint32_t code, uint32_t opcode)
{
    return ruleCode == code && (ruleOpcode == VESMORA_SIM_ANY_OPCODE || ruleOpcode == opcode);
}

void faults_clear(SimFaults *faults)
{
    faults->ruleCount = 0;
    faults->delayCount = 0;
}

uint32_t faults_add(SimFaults *faults, const VesmoraSimFault *rule)
{
    if (rule->nth == 0 || !is_failure(rule->status))
        return SIM_INVALID_PARAMETER;
    if (faults->ruleCount == SIM_FAULT_COUNT)
        return SIM_INSUFFICIENT_RESOURCES;
    faults->rules[faults->ruleCount++] = *rule;
    return SIM_SUCCESS;
}

static void remove_rule(SimFaults *faults, uint32_t index)
{
    --faults->ruleCount;
    for (uint32_t i = index; i < faults->ruleCount; ++i)
        faults->rules[i] = faults->rules[i + 1];
}

static void remove_delay(SimFaults *faults, uint32_t index)
{
    faults->delays[index] = faults->delays[--faults->delayCount];
}

uint32_t faults_set_delay(SimFaults *faults, const VesmoraSimDelay *delay)
{
    if (delay->code == VESMORA_SIM_OPEN_CODE || delay->milliseconds > VESMORA_SIM_LONGEST_DELAY)
        return SIM_INVALID_PARAMETER;
    for (uint32_t i = 0; i < faults->delayCount; ++i) {
        if (faults->delays[i].code == delay->code && faults->delays[i].opcode == delay->opcode) {
            remove_delay(faults, i);
            break;
        }
    }
    if (delay->milliseconds == 0)
        return SIM_SUCCESS;
    if (faults->delayCount == SIM_DELAY_COUNT)
        return SIM_INSUFFICIENT_RESOURCES;
    faults->delays[faults->delayCount++] = *delay;
    return SIM_SUCCESS;
}

/* Whether the rule fires on a request that matches it. */
static int count_in(VesmoraSimFault *rule)
{
    if (rule->nth > 1) {
        --rule->nth;
        return 0;
    }
    return 1;
}

/* Whether the rule has fired for the last time. */
static int use_up(VesmoraSimFault *rule)
{
    return rule->count != VESMORA_SIM_FOR_EVER && --rule->count == 0;
}

uint32_t faults_count(SimFaults *faults, uint32_t code, uint32_t opcode)
{
    uint32_t status = SIM_SUCCESS;
    for (uint32_t i = 0; i < faults->ruleCount;) {
        VesmoraSimFault *rule = &faults->rules[i];
        if (!matches(rule->code, rule->opcode, code, opcode) || !count_in(rule)) {
            ++i;
            continue;
        }
        if (status == SIM_SUCCESS)
            status = rule->status;
        if (use_up(rule))
            remove_rule(faults, i);
        else
            ++i;
    }
    return status;
}

uint32_t faults_delay(const SimFaults *faults, uint32_t code, uint32_t opcode)
{
    uint32_t longest = 0;
    for (uint32_t i = 0; i < faults->delayCount; ++i) {
        const VesmoraSimDelay *delay = &faults->delays[i];
        if (matches(delay->code, delay->opcode, code, opcode) && delay->milliseconds > longest)
            longest = delay->milliseconds;
    }
    return longest;
}
