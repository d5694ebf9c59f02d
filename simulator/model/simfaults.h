#ifndef SIMFAULTS_H
#define SIMFAULTS_H

#include "controlprotocol.h"

#ifdef __cplusplus
extern "C" {
#endif

#define SIM_FAULT_COUNT 32u
#define SIM_DELAY_COUNT 32u

/* The failures and delays that a test asked for. */
typedef struct SimFaults {
    VesmoraSimFault rules[SIM_FAULT_COUNT]; /* in the order they were added */
    uint32_t ruleCount;
    VesmoraSimDelay delays[SIM_DELAY_COUNT];
    uint32_t delayCount;
} SimFaults;

void faults_clear(SimFaults *faults);

/* SIM_INVALID_PARAMETER for a request number of 0 or a status that is no failure,
 * SIM_INSUFFICIENT_RESOURCES when there are too many rules. */
uint32_t faults_add(SimFaults *faults, const VesmoraSimFault *rule);

/* SIM_INVALID_PARAMETER for an open or a delay that is too long,
 * SIM_INSUFFICIENT_RESOURCES when there are too many delays. */
uint32_t faults_set_delay(SimFaults *faults, const VesmoraSimDelay *delay);

/* Counts a request in every rule that matches it; SIM_SUCCESS, or what it is to fail with. */
uint32_t faults_count(SimFaults *faults, uint32_t code, uint32_t opcode);

/* In ms; of several delays that match, the longest. */
uint32_t faults_delay(const SimFaults *faults, uint32_t code, uint32_t opcode);

#ifdef __cplusplus
}
#endif

#endif
